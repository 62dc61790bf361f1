@call "%~dp0registrieren.cmd" /abmelden %*
