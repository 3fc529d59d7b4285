// For Microsoft's compiler: imports the type library as smart pointers and classes with properties, in the
// namespace JobObjectsLib. With another compiler, or for the plain interfaces, include JobObjects.h instead.
#pragma once

#import "../JobObjects.tlb"
