// For Microsoft's compiler: reads the type library and makes classes with properties and smart pointers of
// it, in the namespace JobObjectsLib. With another compiler, or for the plain interfaces, include
// JobObjects.h instead.
#pragma once

#import "../JobObjects.tlb"
