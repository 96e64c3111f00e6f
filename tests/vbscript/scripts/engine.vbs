Say ScriptEngine  ' expect: VBScript
Say ScriptEngineMajorVersion & "." & ScriptEngineMinorVersion  ' expect: 5.8
Say GetLocale  ' expect: 1033
Say SetLocale("en-us")  ' expect: 1033
SetLocale "de-de"  ' expect error 447

' Scripts decide, they do not act.
Set x = CreateObject("Scripting.FileSystemObject")  ' expect error 429
Set x = CreateObject("WScript.Shell")  ' expect error 429
Set x = GetObject("winmgmts:")  ' expect error 429
MsgBox "hello"  ' expect error 70
x = InputBox("name")  ' expect error 70

' ---- Constants
Say vbCrLf = Chr(13) & Chr(10)  ' expect: True
Say vbNewLine = vbCrLf  ' expect: True
Say Asc(vbTab) & Asc(vbCr) & Asc(vbLf) & Asc(vbFormFeed) & Asc(vbVerticalTab)  ' expect: 913101211
Say Len(vbNullChar) & Len(vbNullString)  ' expect: 10
Say vbTextCompare & vbSunday & vbSaturday & vbTrue & vbUseDefault  ' expect: 117-1-2
Say vbObjectError  ' expect: -2147221504
Say vbArray + vbVariant  ' expect: 8204
Say Hex(vbYellow)  ' expect: FFFF
vbTab = 5  ' expect error 501
