# The library in PowerShell (docs/bindings.md): .\First-Steps.ps1 C:\path\WFINFO.dll
param([string]$Library = "WFINFO.dll")

Import-Module (Join-Path $PSScriptRoot "wfinfo.psm1") -ArgumentList $Library
# Errors to standard error: a box would wait for somebody to close it.
[WfinfoErrors]::ReportTo({ param($text) [Console]::Error.WriteLine($text) }, $true)
"interface " + [Wfinfo]::GetWFInfoVersion([IntPtr]::Zero)
[Wfinfo]::ToUpper("caf$([char]0xE9) $([char]0x2615) $([char]0x6F22)$([char]0x5B57)")
[Wfinfo]::FormatDate("Mon, 2 Jun 2025 09:00:00 +0900", "YYYY/MM/DD")
# Two results in one line are no matter: each is copied.
$list = 'Alice <alice@example.com>, "Bob, B." <bob@example.com>'
[Wfinfo]::GetEmailList($list, 0) + "; " + [Wfinfo]::GetEmailList($list, 1)
[void][Wfinfo]::ToUpper([NullString]::Value)
