@echo off
rem Makes the interop assembly for .NET clients. Run it in a developer command prompt. The assembly works in 32-bit
rem and 64-bit processes.
tlbimp "%~dp0..\JobObjects.tlb" /machine:Agnostic /namespace:JobObjects /out:"%~dp0JobObjects.Interop.dll"
