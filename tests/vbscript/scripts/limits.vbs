' ---- What reaches a limit and can be caught
Sub Endless(n)
  Endless n + 1
End Sub
Endless 1  ' expect error 28
Function Text(length)
  Text = String(length, "x")
End Function
x = Text(20000000)  ' expect error 14
Sub DoubleText
  Dim i, s
  s = "x"
  For i = 1 To 40
    s = s & s
  Next
End Sub
DoubleText  ' expect error 14
ReDim large(2000000)  ' expect error 7
ReDim large(2000, 2000)  ' expect error 7
Sub FillMemory
  Dim list(), i
  ReDim list(100)
  For i = 0 To 100
    list(i) = String(1000000 + i, "x")
  Next
End Sub
FillMemory  ' expect error 7
Sub Nested
  Execute "Nested"
End Sub
Nested  ' expect error 28
Function SelfEval
  SelfEval = Eval("SelfEval()")
End Function
x = SelfEval()  ' expect error 28

' ---- And afterwards all is as before
Say Len(Text(1000000))  ' expect: 1000000
Function Depth(n)
  If n = 0 Then Depth = 0 Else Depth = Depth(n - 1) + 1
End Function
Say Depth(2000)  ' expect: 2000

' ---- Long texts are searched in linear time, whatever they repeat
long_text = String(1000000, "a")
long_wanted = String(500000, "a") & "b"
Say InStr(long_text, long_wanted)  ' expect: 0
Say InStrRev(long_text, "b" & String(500000, "a"))  ' expect: 0
Say InStr(1, long_text & "B", long_wanted, 1)  ' expect: 500001
Say InStrRev("b" & long_text, "b" & String(500000, "a"))  ' expect: 1
Say Len(Replace(long_text & "b", long_wanted, "x"))  ' expect: 500001
Say UBound(Split(long_text & "b", long_wanted))  ' expect: 1
