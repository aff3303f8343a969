# WFINFO.dll in PowerShell (64-bit), through the C# source beside this file.
#
#   Import-Module .\wfinfo.psm1 -ArgumentList C:\path\WFINFO.dll
#   [Wfinfo]::ToUpper("text")
#
# Errors of the library are modal boxes, in any program: call [WfinfoErrors]::ReportTo({ param($text) ... }, $true) first.
param([Parameter(Mandatory = $true)][string]$Library)

if (-not [Environment]::Is64BitProcess) { throw "WFINFO.dll needs the 64-bit PowerShell" }
if (-not ("Wfinfo" -as [type])) {
    $source = Join-Path $PSScriptRoot "..\csharp\Wfinfo.cs"
    Add-Type -Path $source
    Add-Type -Namespace WfinfoModule -Name Loader -MemberDefinition @'
[DllImport("kernel32.dll", CharSet = CharSet.Unicode, SetLastError = true)] public static extern IntPtr LoadLibrary(string path);
'@
}
# The functions find the library by its name, once it is loaded.
if ([WfinfoModule.Loader]::LoadLibrary((Resolve-Path $Library).ProviderPath) -eq [IntPtr]::Zero) {
    throw "cannot load ${Library}: error $([Runtime.InteropServices.Marshal]::GetLastWin32Error())"
}
