@echo off
rem test.cmd [/throw-away [NAME]]   runs the tests of both editions, one program after another,
rem or the program of that name in both.
rem
rem What would change this machine (services, uninstallers, deletions, Windows' own registry keys)
rem is skipped, unless /throw-away tells that the machine may be thrown away afterwards. Run it then
rem as administrator.
setlocal
cd /d "%~dp0"
set QORVENIX_THROW_AWAY=0
if /i "%~1"=="/throw-away" set QORVENIX_THROW_AWAY=1
set tests=test_*.exe
if not "%~2"=="" set tests=test_%~2.exe
set QORVENIX_RESULTS=%CD%\results.txt
set passed=0
set failed=0
set skipped=0

set QORVENIX=%CD%\Qorvenix.exe
for %%t in (32\%tests%) do call :run_tests %%t
if "%PROCESSOR_ARCHITECTURE%%PROCESSOR_ARCHITEW6432%"=="x86" goto :without_64_bits
set QORVENIX=%CD%\Qorvenix64.exe
for %%t in (64\%tests%) do call :run_tests %%t
goto :end

:without_64_bits
echo skipped, because this Windows is a 32-bit one: the 64-bit edition
call :count 0 0 1

:end
echo %passed% passed, %failed% failed, %skipped% skipped
if %failed%==0 exit /b 0
exit /b 1

:run_tests
if %~n1==test_service goto :eof
echo ---- %1
if exist results.txt del results.txt
%1
if not exist results.txt echo it did not come to its end
if not exist results.txt set /a failed+=1
if exist results.txt for /f "tokens=1-3" %%a in (results.txt) do call :count %%a %%b %%c
goto :eof

:count
set /a passed+=%1
set /a failed+=%2
set /a skipped+=%3
goto :eof
