@echo off
rem test.cmd [/throw-away [NAME]]   runs the tests of both editions, one program after another,
rem or the program of that name in both.
rem
rem What would change this machine (services, uninstallers, deletions, Windows' own registry keys) is skipped, unless
rem /throw-away tells that the machine may be thrown away afterwards. Run it then as administrator.
setlocal
cd /d "%~dp0"
set QORVENIX_THROW_AWAY=0
if /i "%~1"=="/throw-away" set QORVENIX_THROW_AWAY=1
set tests=test_*.exe
if not "%~2"=="" set tests=test_%~2.exe
set failed=

set QORVENIX=%CD%\Qorvenix.exe
for %%t in (32\%tests%) do call :run %%t
set QORVENIX=%CD%\Qorvenix64.exe
if "%PROCESSOR_ARCHITECTURE%%PROCESSOR_ARCHITEW6432%"=="x86" echo the 64-bit edition is left out: this Windows is a 32-bit one
if not "%PROCESSOR_ARCHITECTURE%%PROCESSOR_ARCHITEW6432%"=="x86" for %%t in (64\%tests%) do call :run %%t

if "%failed%"=="" echo all passed
if "%failed%"=="" exit /b 0
echo failed:%failed%
exit /b 1

:run
if %~n1==test_service goto :eof
echo ---- %1
%1
if not %ERRORLEVEL%==0 set failed=%failed% %1
goto :eof
