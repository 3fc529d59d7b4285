@echo off
rem Makes the interop assembly for .NET clients. Run it in a developer command prompt. The assembly is for 32-bit
rem processes, as the library is.
tlbimp "%~dp0..\JobObjects.tlb" /machine:X86 /namespace:JobObjects /out:"%~dp0JobObjects.Interop.dll"
