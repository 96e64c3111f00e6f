' ---- Script level and procedures
g = "global"
Sub ReadsGlobal
  Say g  ' expect: global
  g = "changed"
End Sub
ReadsGlobal
Say g  ' expect: changed
Sub HidesGlobal
  Dim g
  Say TypeName(g)  ' expect: Empty
  g = "local"
End Sub
HidesGlobal
Say g  ' expect: changed
Sub ImplicitLocal
  implicit = "inside"
  Say implicit  ' expect: inside
End Sub
ImplicitLocal
Say TypeName(known_later)  ' expect: Empty
Sub UsesLater
  Say later_global  ' expect: set later
End Sub
later_global = "set later"
UsesLater
Sub Parameter(g)
  g = g & "!"
End Sub
p = "p"
Parameter p
Say p & g  ' expect: p!changed
Sub Twice
  Dim count
  count = count + 1
  Say count  ' expect: 1 | 1
End Sub
Twice
Twice
Sub BlockScope
  If True Then
    Dim inside
    inside = 1
  End If
  Say inside  ' expect: 1
End Sub
BlockScope
Const Level = "script"
Sub LocalConst
  Const Level = "procedure"
  Say Level  ' expect: procedure
End Sub
LocalConst
Say Level  ' expect: script
Sub UsesConstBelow
  Say Below  ' expect: 42
End Sub
Const Below = 42
UsesConstBelow

' ---- A script's own names come before the built-in ones
Function Trim(x)
  Trim = "own " & x
End Function
Say Trim("a")  ' expect: own a
Say LTrim(" b")  ' expect: b
vbTab = 1  ' expect error 501

' ---- Execute, ExecuteGlobal, Eval
Execute "e1 = 1 : e2 = e1 + 1"
Say e1 & e2  ' expect: 12
ExecuteGlobal "Function Made(x) : Made = x * 3 : End Function"
Say Made(4)  ' expect: 12
Say Eval("1 + 2 * 3")  ' expect: 7
x = 5
Say Eval("x = 5") & Eval("x = 6")  ' expect: TrueFalse
Execute "x = 6"
Say x  ' expect: 6
Sub Inner
  Dim local
  local = 1
  Execute "local = local + 1 : fresh = 7"
  Say local & fresh  ' expect: 27
  ExecuteGlobal "from_inner = 8 : local = 100"
  Say local & from_inner  ' expect: 28
  Say Eval("local * 10")  ' expect: 20
  x = "by name"
End Sub
Inner
Say TypeName(Eval("fresh")) & from_inner & local  ' expect: Empty8100
Say x  ' expect: by name
Execute "Class Dynamic : Public V : End Class"
Set d = New Dynamic
d.V = "dynamic"
Say d.V  ' expect: dynamic
Execute "x = "  ' expect error 1023
Execute "5*4"  ' expect error 1024
x = Eval("1 +")  ' expect error 1002
x = Eval("1 / 0")  ' expect error 11
Execute "Err.Raise 77, , ""raised"""  ' expect error 77: raised
Execute "Dim again" & vbCrLf & "again = 2"
Execute "Dim again"
Say again  ' expect: 2
Class Holder
  Private hidden
  Public Function Run(text)
    hidden = "member"
    Execute text
    Run = hidden
  End Function
  Public Function Value(text)
    hidden = "h"
    Value = Eval(text)
  End Function
End Class
Set h = New Holder
Say h.Run("hidden = hidden & 1")  ' expect: member1
Say h.Run("Me.Run_ = 1")  ' expect error 438
Say h.Value("hidden & hidden")  ' expect: hh

' ---- Functions' names within themselves
Function Result
  Result = 1
  Result = Result + 1
End Function
Say Result  ' expect: 2
Function Recursive(n)
  If n > 0 Then Recursive = Recursive(n - 1) + 1 Else Recursive = 0
End Function
Say Recursive(3)  ' expect: 3
