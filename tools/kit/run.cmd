@"%~dp0kit.exe" %*
@exit /b %errorlevel%
