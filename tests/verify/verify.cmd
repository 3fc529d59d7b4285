@echo off
rem Tests JobObjects on this machine and writes JobObjects-verify-report.txt. See README.txt.
"%~dp0verify.exe" %*
exit /b %errorlevel%
