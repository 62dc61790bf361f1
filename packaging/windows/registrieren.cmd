@echo off
rem Meldet die Klassen von QXImportJob beim System an, fuer 64- und fuer 32-Bit-Programme:
rem   registrieren             fuer alle Benutzer, als Administrator
rem   registrieren /benutzer   nur fuer den angemeldeten Benutzer
rem Mit /abmelden davor werden sie wieder abgemeldet.
setlocal
set "richtung="
set "umfang="
set "ergebnis=registriert"
if /i "%~1"=="/abmelden" (
  set "richtung=/u"
  set "ergebnis=abgemeldet"
  shift /1
)
if /i "%~1"=="/benutzer" (
  set "umfang=/n /i:user"
  shift /1
)
if not "%~1"=="" (
  echo Aufruf: registrieren [/benutzer] oder abmelden [/benutzer]
  exit /b 2
)
rem Aus einem 32-Bit-Programm heraus ist System32 der Ordner der 32-Bit-Programme.
set "system64=%SystemRoot%\System32"
if exist "%SystemRoot%\Sysnative\regsvr32.exe" set "system64=%SystemRoot%\Sysnative"
set "system32=%SystemRoot%\SysWOW64"
"%system64%\regsvr32.exe" /s %richtung% %umfang% "%~dp0QXImportJob.dll"
if errorlevel 1 goto fehler
if not exist "%system32%\regsvr32.exe" goto fertig
"%system32%\regsvr32.exe" /s %richtung% %umfang% "%~dp0QXImportJob32.dll"
if errorlevel 1 goto fehler
:fertig
echo Die Klassen von QXImportJob sind %ergebnis%.
exit /b 0
:fehler
echo Das ist nicht gelungen. Als Administrator aufrufen oder mit /benutzer nur den eigenen
echo Benutzer anmelden oder abmelden.
exit /b 1
