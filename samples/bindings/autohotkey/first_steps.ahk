; The library in AutoHotkey v2 (docs/bindings.md): AutoHotkey64.exe first_steps.ahk C:\path\WFINFO.dll
#Include wfinfo.ahk

DllCall("LoadLibrary", "Str", A_Args.Length ? A_Args[1] : "WFINFO.dll", "Ptr")
; Errors to standard error: a box would wait for somebody to close it.
WfinfoText.ReportErrorsTo((text) => FileAppend(text "`n", "**", "UTF-8"))
Print(text) => FileAppend(text "`n", "*", "UTF-8")
Print("interface " Wfinfo.GetWFInfoVersion(0))
Print(Wfinfo.ToUpper("café ☕ 漢字"))
Print(Wfinfo.FormatDate("Mon, 2 Jun 2025 09:00:00 +0900", "YYYY/MM/DD"))
; Two results in one line are no matter: each is copied.
list := 'Alice <alice@example.com>, "Bob, B." <bob@example.com>'
Print(Wfinfo.GetEmailList(list, 0) "; " Wfinfo.GetEmailList(list, 1))
Wfinfo.ToUpper(WfinfoText.Null)
