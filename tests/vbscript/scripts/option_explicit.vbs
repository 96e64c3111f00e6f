Option Explicit
Dim declared, answer
declared = 1
Say declared  ' expect: 1
undeclared = 1  ' expect error 500: Variable is undefined: 'undeclared'
answer = undeclared  ' expect error 500: Variable is undefined: 'undeclared'
answer = Unknown(1)  ' expect error 500: Variable is undefined: 'Unknown'
Unknown 1  ' expect error 500: Variable is undefined: 'Unknown'
Sub Test
  Dim local
  local = 1
  missing = local
End Sub
Test  ' expect error 500: Variable is undefined: 'missing'
Dim below
Sub UsesBelow
  below = 2
End Sub
UsesBelow
Say below  ' expect: 2
Function Named(parameter)
  Named = parameter + 1
End Function
Say Named(1)  ' expect: 2
ReDim made(2)
made(1) = 1
Say made(1)  ' expect: 1
Const c = 3
Say c & vbTab & Len("x")  ' expect: 3	1
Class K
  Public member
  Public Sub Go
    member = 1
    Me.member = 2
  End Sub
End Class
Dim k1
Set k1 = New K
k1.Go
Say k1.member  ' expect: 2
