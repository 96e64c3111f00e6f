' ---- If
If True Then Say "then" Else Say "else"  ' expect: then
If False Then Say "then" Else Say "else"  ' expect: else
If True Then Say 1 : Say 2  ' expect: 1 | 2
If False Then Say 1 : Say 2
If False Then Say 1 ElseIf True Then Say 2 Else Say 3  ' expect: 2
If True Then If False Then Say 1 Else Say 2  ' expect: 2
n = 7
If n < 5 Then
  Say "small"
ElseIf n < 10 Then
  Say "middle"  ' expect: middle
ElseIf n < 8 Then
  Say "too late"
Else
  Say "large"
End If
If Empty Then Say "Empty" Else Say "not Empty"  ' expect: not Empty
If Null Then Say "Null" Else Say "not Null"  ' expect: not Null
If 0.1 Then Say "a fraction"  ' expect: a fraction
If -1 Then Say "negative"  ' expect: negative
If "True" Then Say "a text"  ' expect: a text
If "-3.5" Then Say "a number in a text"  ' expect: a number in a text
If "abc" Then n = 8  ' expect error 13

' ---- Both sides of And and Or are evaluated
calls = 0
Function Called(answer)
  calls = calls + 1
  Called = answer
End Function
If Called(False) And Called(True) Then n = 9
Say calls  ' expect: 2
If Called(True) Or Called(True) Then calls = calls + 10
Say calls  ' expect: 14

' ---- Select Case
Function Kind(x)
  Select Case x
    Case 1, 3, 5
      Kind = "odd"
    Case 2 : Kind = "two"
    Case "a", "b"
      Kind = "letter"
    Case Else
      Kind = "other"
  End Select
End Function
Say Kind(1) & " " & Kind(5) & " " & Kind(2) & " " & Kind("b") & " " & Kind("c")  ' expect: odd odd two letter other
Say Kind(2.0) & " " & Kind("B") & " " & Kind(Empty)  ' expect: two other other
Select Case True
  Case n > 100
    Say "above"
  Case n > 1
    Say "between"  ' expect: between
  Case n > 0
    Say "too late"
End Select
Select Case Called(4)
  Case 1
  Case 2
  Case 3
End Select
Say calls  ' expect: 15
Select Case 1
  Case Called(1), Called(2)
  Case Called(3)
End Select
Say calls  ' expect: 16

' ---- For
s = ""
For i = 1 To 4 : s = s & i : Next
Say s & " " & i  ' expect: 1234 5
s = ""
For i = 10 To 1 Step -3 : s = s & i & "," : Next
Say s & i  ' expect: 10,7,4,1,-2
s = ""
For i = 1 To 0 : s = s & i : Next
Say "[" & s & "]" & i  ' expect: []1
s = ""
For i = 0 To 1 Step 0.25 : s = s & i & " " : Next
Say s & i  ' expect: 0 0.25 0.5 0.75 1 1.25
last = 3
s = ""
For i = 1 To last : last = 10 : s = s & i : Next
Say s  ' expect: 123
s = ""
For i = 1 To 10
  s = s & i
  i = i + 2
Next
Say s & " " & i  ' expect: 14710 13
For i = 1 To 10
  If i = 3 Then Exit For
Next
Say i  ' expect: 3
s = ""
For i = 1 To 3
  For j = 1 To 3
    If j > i Then Exit For
    s = s & i & j & " "
  Next
Next
Say s  ' expect: 11 21 22 31 32 33
For i = 32766 To 32768 : Next
Say i & TypeName(i)  ' expect: 32769Long
For i = 1.5 To 3 : Next
Say i & TypeName(i)  ' expect: 3.5Double
For i = "1" To 2 : Next
Say i  ' expect: 3

' ---- For Each
s = ""
For Each item In Array(1, "b", Empty, 4) : s = s & "[" & item & "]" : Next
Say s  ' expect: [1][b][][4]
Dim squares(2)
For i = 0 To 2 : squares(i) = i * i : Next
For Each item In squares : item = 100 : Next
Say Join(squares, ",")  ' expect: 0,1,4
Dim table(1, 1)
table(0, 0) = "a" : table(1, 0) = "b" : table(0, 1) = "c" : table(1, 1) = "d"
s = ""
For Each item In table : s = s & item : Next
Say s  ' expect: abcd
Set d = CreateObject("Scripting.Dictionary")
d("x") = 1 : d("y") = 2
s = ""
For Each key In d : s = s & key & d(key) : Next
Say s  ' expect: x1y2
s = ""
For Each item In Array(1, 2, 3)
  If item = 2 Then Exit For
  s = s & item
Next
Say s  ' expect: 1

' ---- Do and While
n = 0
Do While n < 3 : n = n + 1 : Loop
Say n  ' expect: 3
Do Until n = 5 : n = n + 1 : Loop
Say n  ' expect: 5
Do : n = n + 1 : Loop While n < 5
Say n  ' expect: 6
Do : n = n + 1 : Loop Until n > 8
Say n  ' expect: 9
Do While False : n = 100 : Loop
Say n  ' expect: 9
Do
  n = n + 1
  If n = 12 Then Exit Do
Loop
Say n  ' expect: 12
While n < 15
  n = n + 1
Wend
Say n  ' expect: 15
For i = 1 To 3
  Do
    n = n + 1
    If n > 15 Then Exit For
  Loop
Next
Say i & " " & n  ' expect: 1 16
Do Until n = 0
  Do While n > 3
    n = n - 1
    If n = 10 Then Exit Do
  Loop
  If n = 10 Then n = 0
Loop
Say n  ' expect: 0
