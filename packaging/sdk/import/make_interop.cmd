@echo off
rem Makes the interop assembly for .NET clients. Run it in a developer command prompt. The assembly works in 32-bit
rem processes only, like the library.
tlbimp "%~dp0..\JobObjects.tlb" /machine:X86 /namespace:JobObjects /out:"%~dp0JobObjects.Interop.dll"
