@echo off
rem Checks the states of an installation in turn. Needs its own registry. Arguments: the tool, and a folder that
rem contains only the library.
echo == not registered
%1 check
echo exit %ERRORLEVEL%
%1 show records\changed.xml
echo exit %ERRORLEVEL%
%1 catalogue
echo exit %ERRORLEVEL%

echo == registered, without a catalogue
regsvr32 /s %2\Tarnwick.dll
%1 check
echo exit %ERRORLEVEL%

echo == with a catalogue
copy /y catalogues\sound.xml %2\JobAttributes.xml >nul
%1 check
echo exit %ERRORLEVEL%
%1 catalogue
echo exit %ERRORLEVEL%

echo == with a log without a target
set LOG=HKLM\SOFTWARE\Corvane\PrintAgent\JobObjects\Log
reg add %LOG% /v Enabled /t REG_DWORD /d 1 /f >nul
reg add %LOG% /v Options /t REG_SZ /d 63 /f >nul
%1 check
echo exit %ERRORLEVEL%
reg add %LOG% /v FileName /t REG_SZ /d C:\no_such_folder\jobs.log /f >nul
reg add %LOG% /v Options /t REG_DWORD /d 63 /f >nul
%1 check
echo exit %ERRORLEVEL%
reg add %LOG% /v FileName /t REG_SZ /d %2\twice.log /f >nul
echo line >%2\other.log
mklink /H %2\twice.log %2\other.log >nul
%1 check
echo exit %ERRORLEVEL%
del %2\other.log
%1 check
echo exit %ERRORLEVEL%
del %2\twice.log
reg delete %LOG% /f >nul

echo == damaged
set CLASS=HKCR\CLSID\{63EBBCCC-453D-444D-8A5A-C71EE1EAD2AC}
reg add %CLASS%\InprocServer32 /v ThreadingModel /t REG_SZ /d Both /f >nul
reg delete HKCR\TypeLib\{D47A619E-7CB5-4B98-9A01-93662E11761E} /f >nul
reg delete HKCR\Corvane.FaxJob /f >nul
%1 check
echo exit %ERRORLEVEL%
