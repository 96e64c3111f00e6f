' What refers to a variable or an element, and how long; what keeps its own value.
Option Explicit
Dim a, b, c, i, e, o, text

Sub Increment(x)
  x = x + 1
End Sub
Function Both(x, y)
  x = x & "!"
  Both = x & y
End Function

' Elements by reference
Dim fixed(2)
fixed(1) = 5
Increment fixed(1)
Say fixed(1)                      ' expect: 6
Increment (fixed(1))
Say fixed(1)                      ' expect: 6
ReDim a(2)
a(0) = "v"
Say Both(a(0), a(0))              ' expect: v!v!
b = a
Increment b(1)
Say IsEmpty(a(1)) & b(1)          ' expect: True1

' An array stands still while an element of it is passed
Sub Meddle(x, how)
  Execute how
End Sub
Meddle a(1), "ReDim a(5)"         ' expect error 10
Meddle a(1), "Erase a"            ' expect error 10
Meddle a(1), "a = Empty : x = 3"
Say IsEmpty(a)                    ' expect: True
a = Array(1, 2)
ReDim a(5)
Say UBound(a)                     ' expect: 5

' What an element is assigned to while it is passed
Sub Replace1(x)
  a(0) = "whole"
  x = x & "-part"
End Sub
Replace1 a(0)
Say a(0)                          ' expect: whole-part
Sub Share(x)
  b = a
  x = "after"
End Sub
Share a(0)
Say a(0) & " " & b(0)             ' expect: after whole-part

' For Each stands on the array it began with
a = Array(1, 2, 3)
text = ""
For Each e In a
  a(2) = 9
  text = text & e
Next
Say text                          ' expect: 129
text = ""
For Each e In a
  a = Array("other")
  text = text & e
Next
Say text & a(0)                   ' expect: 129other
Sub LeaveEarly(list)
  Dim item
  For Each item In list
    Exit Sub
  Next
End Sub
a = Array(1, 2)
LeaveEarly a
ReDim a(3)
Say UBound(a)                     ' expect: 3
For Each e In a
  ReDim a(1)                      ' expect error 10 | error 10 | error 10 | error 10
Next

' Arrays in arrays
a = Array(Array(1, 2), Array(3, 4))
b = a
a(0)(1) = "inner"
Say a(0)(1) & " " & b(0)(1)       ' expect: inner 2
c = a(1)
c(0) = "copy"
Say a(1)(0)                       ' expect: 3
a(1) = a
Say a(1)(0)(1) & UBound(a(1))     ' expect: inner1
Dim jagged(1)
ReDim b(1, 1)
b(1, 0) = "two"
jagged(0) = b
jagged(0)(1, 0) = jagged(0)(1, 0) & "d"
Say jagged(0)(1, 0) & b(1, 0)     ' expect: twodtwo
ReDim Preserve b(1, 3)
Say b(1, 0) & UBound(b, 2)        ' expect: two3
ReDim b(2147483647)               ' expect error 7
ReDim b(1048575, 2147483647)      ' expect error 7
ReDim b(-1)
Say UBound(b)                     ' expect: -1
a(5)(1) = 1                       ' expect error 9
a(0)(7) = 1                       ' expect error 9
a(0)(0)(0) = 1                    ' expect error 13
jagged = 5                        ' expect error 13: Type mismatch: 'jagged'

' What is read on the left keeps its value while the right runs
Dim counter
Function Bump
  counter = counter + 1
  Bump = counter
End Function
counter = 1
Say counter + Bump                ' expect: 3
counter = 1
Say counter & Bump & counter      ' expect: 122
counter = 1
If counter < Bump Then Say "kept" ' expect: kept
counter = 3
text = ""
For i = counter To Bump + Bump
  text = text & i
Next
Say text                          ' expect: 3456789

' A text that grows in place is nobody else's
a = "x"
b = a
a = a & "y"
c = a
a = a & a & "z"
Say a & " " & b & " " & c         ' expect: xyxyz x xy
Function Grown(s)
  s = s & "1"
  Grown = s
End Function
a = a & Grown(a) & Len(a)
Say a                             ' expect: xyxyz1xyxyz16

' Names of a procedure's own, made while it runs
Sub Inner
  Dim x
  x = "local"
  Execute "x = x & ""+"" : Dim made : made = x"
  Say x & Eval("made")            ' expect: local+local+
  Execute "Function Twice(n) : Twice = n * 2 : End Function"
  Say Eval("Twice(4)")            ' expect: 8
End Sub
Inner
Say made                          ' expect error 500: Variable is undefined: 'made'
Dim running
Sub Redefined
  ExecuteGlobal "Sub Redefined : running = running & ""new"" : End Sub"
  running = running & "old "
End Sub
Redefined
Redefined
Say running                       ' expect: old new

' An error leaves nothing half done
a = Array(1, 2)
a(0) = 1 / 0                      ' expect error 11
Say a(0)                          ' expect: 1
On Error Resume Next
For i = 1 To "none"
  Say "once"                      ' expect: once
Next
Say Err.Number                    ' expect: 92
Err.Clear
With 5
  Say "inside"                    ' expect: inside
End With
Say Err.Number                    ' expect: 424
On Error GoTo 0
