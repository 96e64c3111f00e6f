' ---- The next statement
On Error Resume Next
x = 1 / 0
Say Err.Number & " " & Err.Description  ' expect: 11 Division by zero
Say Err.Source  ' expect: Microsoft VBScript runtime error
Say Err  ' expect: 11
x = 5
Say Err.Number & x  ' expect: 115
Err.Clear
Say Err.Number & Err.Description & Err.Source  ' expect: 0
x = 1
x = 1 / 0
Say x  ' expect: 1
Err.Clear

' ---- A condition that fails goes on with the first statement of its block
If 1 / 0 Then
  Say "then"  ' expect: then
Else
  Say "else"
End If
Say Err.Number  ' expect: 11
Err.Clear
n = 0
Do While n < 1 / 0
  n = n + 1
  If n = 3 Then Exit Do
Loop
Say n  ' expect: 3
Err.Clear

' ---- An error in a procedure without a handler ends it
Sub Fails
  x = 1 / 0
  Say "not reached"
End Sub
Fails
Say Err.Number  ' expect: 11
Err.Clear
Function Deep(n)
  If n = 0 Then Deep = CInt("no number") Else Deep = Deep(n - 1)
End Function
y = "before"
y = Deep(10)
Say y & Err.Number & Err.Description  ' expect: before13Type mismatch: 'CInt'
Err.Clear

' ---- A procedure with its own handler goes on
Function Handles
  On Error Resume Next
  Handles = "a"
  Handles = Handles & 1 / 0
  Handles = Handles & "b"
  Fails
  Handles = Handles & Err.Number
End Function
On Error GoTo 0
Say Handles()  ' expect: ab11
Sub Handler
  On Error Resume Next
End Sub
Handler
x = 1 / 0  ' expect error 11

' ---- On Error and Exit clear the error; the end of a procedure does not
On Error Resume Next
x = 1 / 0
On Error Resume Next
Say Err.Number  ' expect: 0
x = 1 / 0
On Error GoTo 0
Say Err.Number  ' expect: 0
Sub Exits
  On Error Resume Next
  x = 1 / 0
  Exit Sub
End Sub
Exits
Say Err.Number  ' expect: 0
Sub Ends
  On Error Resume Next
  x = 1 / 0
End Sub
Ends
Say Err.Number  ' expect: 11
Err.Clear

' ---- Raise
Err.Raise 1000, "mine", "my text"  ' expect error 1000: my text
Err.Raise 6  ' expect error 6: Overflow
Err.Raise 12345  ' expect error 12345: Unknown runtime error
Err.Raise vbObjectError + 1, , "custom"  ' expect error -2147221503: custom
On Error Resume Next
Err.Raise 1000, "mine", "my text"
Say Err.Number & Err.Source & Err.Description  ' expect: 1000minemy text
Err.Raise 1001
Say Err.Number & Err.Source & Err.Description  ' expect: 1001minemy text
Err.Clear
Err.Raise 5
Say Err.Number & " " & Err.Source & ": " & Err.Description  ' expect: 5 Microsoft VBScript runtime error: Invalid procedure call or argument
Err.Clear
Err.Number = 7
Err.Description = "seven"
Err.Source = "here"
Say Err.Number & Err.Description & Err.Source  ' expect: 7sevenhere
Err.Clear
On Error GoTo 0

' ---- Errors of their own
x = CInt("x")  ' expect error 13: Type mismatch: 'CInt'
x = "a" + 1  ' expect error 13
x = CInt(40000)  ' expect error 6
x = 2000000000 * 2
Say x  ' expect: 4000000000
x = CLng(3000000000)  ' expect error 6
x = 1E308 * 10  ' expect error 6
x = 5 \ 0  ' expect error 11
x = 5 Mod 0  ' expect error 11
x = Mid("a", 0)  ' expect error 5
x = Null
If IsNull(x + 1) Then Say "Null goes through"  ' expect: Null goes through
x = CStr(Null)  ' expect error 94
Dim a(2)
x = a(3)  ' expect error 9
x = a(-1)  ' expect error 9
x = a(0, 0)  ' expect error 9
a(3) = 1  ' expect error 9
x = Empty
x(0) = 1  ' expect error 13
y = x(0)  ' expect error 13
x.Name = 1  ' expect error 424
x.Method  ' expect error 424
Set x = y.z  ' expect error 424
Set x = Nothing
x.Method  ' expect error 91
x = Array(1, 2)
y = x + 1  ' expect error 13
y = x & ""  ' expect error 13
Set y = CreateObject("Nothing.Known")  ' expect error 429
ReDim z(-2)  ' expect error 9

' ---- Loops after an error
On Error Resume Next
s = ""
For i = 1 To 3
  s = s & i
  x = 1 / 0
  s = s & "."
Next
Say s  ' expect: 1.2.3.
s = ""
For Each item In Array(0, 1, 2)
  s = s & 2 / item
Next
Say s  ' expect: 21
Err.Clear
s = "select"
Select Case 1 / 0
  Case 1
    s = s & " one"
  Case Else
    s = s & " else"
End Select
Say Err.Number  ' expect: 11
Err.Clear
On Error GoTo 0

' ---- A part of an expression that fails leaves the target alone
v = 1
Function Bad
  v = 2
  Bad = 1 / 0
End Function
On Error Resume Next
w = "old"
w = v & Bad()
Say w & v  ' expect: old2
