@echo off
rem Checks the states of an installation in turn. Needs its own registry. Arguments: the tool, and a folder that
rem check_test.py prepares.
set TOOL=%1
set FOLDER=%2
set LOG=HKLM\SOFTWARE\Corvane\PrintAgent\JobObjects\Log
set CLASS=HKCR\CLSID\{63EBBCCC-453D-444D-8A5A-C71EE1EAD2AC}

echo == not registered
%TOOL% check
echo exit %ERRORLEVEL%
%TOOL% show records\changed.xml
echo exit %ERRORLEVEL%
%TOOL% catalogue
echo exit %ERRORLEVEL%
echo == not registered, with the library beside the tool
%FOLDER%\beside\jobobjects.exe check
echo exit %ERRORLEVEL%
echo == not registered, with the manifest beside the tool
%FOLDER%\free\jobobjects.exe check
echo exit %ERRORLEVEL%
echo == a manifest without its library
%FOLDER%\lonely\jobobjects.exe check
echo exit %ERRORLEVEL%
echo == a program with a manifest
%TOOL% check %FOLDER%\free\program.exe
echo exit %ERRORLEVEL%
echo == a program whose manifest names a missing assembly
%TOOL% check %FOLDER%\beside\program.exe
echo exit %ERRORLEVEL%
echo == a program of the other bitness
%TOOL% check %FOLDER%\other_bitness.exe
echo exit %ERRORLEVEL%
echo == no program
%TOOL% check %FOLDER%\no_such_program.exe
echo exit %ERRORLEVEL%

echo == registered, without a catalogue
regsvr32 /s %FOLDER%\Tarnwick.dll
%TOOL% check
echo exit %ERRORLEVEL%
%TOOL% validate encodings\utf8.xml
echo exit %ERRORLEVEL%
echo == with a catalogue that has mistakes
copy /y catalogues\no_pair.xml %FOLDER%\JobAttributes.xml >nul
%TOOL% check
echo exit %ERRORLEVEL%
echo == with a catalogue
copy /y catalogues\sound.xml %FOLDER%\JobAttributes.xml >nul
%TOOL% check
echo exit %ERRORLEVEL%
%TOOL% catalogue
echo exit %ERRORLEVEL%
echo == a program without a manifest
%TOOL% check %FOLDER%\program.exe
echo exit %ERRORLEVEL%

echo == a log without a target
reg add %LOG% /v Enabled /t REG_DWORD /d 1 /f >nul
reg add %LOG% /v Options /t REG_SZ /d 63 /f >nul
%TOOL% check
echo exit %ERRORLEVEL%
echo == a log in a folder that does not exist
reg add %LOG% /v FileName /t REG_SZ /d C:\no_such_folder\jobs.log /f >nul
reg add %LOG% /v Options /t REG_DWORD /d 63 /f >nul
%TOOL% check
echo exit %ERRORLEVEL%
echo == a log that is a folder
reg add %LOG% /v FileName /t REG_SZ /d %FOLDER%\free /f >nul
%TOOL% check
echo exit %ERRORLEVEL%
echo == a log with a second name
reg add %LOG% /v FileName /t REG_SZ /d %FOLDER%\twice.log /f >nul
echo line >%FOLDER%\other.log
mklink /H %FOLDER%\twice.log %FOLDER%\other.log >nul
%TOOL% check
echo exit %ERRORLEVEL%
echo == a log that can be written
del %FOLDER%\other.log
%TOOL% check
echo exit %ERRORLEVEL%
del %FOLDER%\twice.log
reg delete %LOG% /f >nul

echo == a damaged registration
reg add %CLASS%\InprocServer32 /v ThreadingModel /t REG_SZ /d Both /f >nul
reg delete HKCR\Corvane.FaxJob /f >nul
%TOOL% check
echo exit %ERRORLEVEL%
echo == a missing type library
regsvr32 /s %FOLDER%\Tarnwick.dll
reg delete HKCR\TypeLib\{D47A619E-7CB5-4B98-9A01-93662E11761E} /f >nul
%TOOL% check
echo exit %ERRORLEVEL%
echo == an older library
regsvr32 /s %FOLDER%\older\Tarnwick.dll
%TOOL% check
echo exit %ERRORLEVEL%

echo == a library of the other bitness
regsvr32 /s %FOLDER%\Tarnwick.dll
move %FOLDER%\Tarnwick.dll %FOLDER%\moved.dll >nul
copy /y %FOLDER%\other_bitness.exe %FOLDER%\Tarnwick.dll >nul
%TOOL% check
echo exit %ERRORLEVEL%
echo == another file in the library's place
copy /y catalogues\sound.xml %FOLDER%\Tarnwick.dll >nul
%TOOL% check
echo exit %ERRORLEVEL%
echo == a library that does not load
copy /y %FOLDER%\truncated.dll %FOLDER%\Tarnwick.dll >nul
%TOOL% check
echo exit %ERRORLEVEL%
echo == a library that was moved away
del %FOLDER%\Tarnwick.dll
%TOOL% check
echo exit %ERRORLEVEL%
%TOOL% check --csv
echo exit %ERRORLEVEL%
