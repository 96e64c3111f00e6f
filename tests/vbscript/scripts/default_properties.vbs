' An object in an expression stands for its default property.
Class Boxed
  Public Content
  Public Default Property Get Value
    Value = Content
  End Property
End Class
Class Plain
End Class
Class Failing
  Public Default Property Get Value
    Value = 1 / 0
  End Property
End Class
Set box = New Boxed
box.Content = 42
Say box + 1  ' expect: 43
Say "n" & box  ' expect: n42
Say -box  ' expect: -42
Say box = 42  ' expect: True
Say box And 3  ' expect: 2
Say Not box  ' expect: -43
Say box ^ 2  ' expect: 1764
Say CInt(box)  ' expect: 42
Say CStr(box)  ' expect: 42
Say CBool(box)  ' expect: True
Say Hex(box)  ' expect: 2A
Say Abs(box)  ' expect: 42
Say Len(box)  ' expect: 2
Say VarType(box)  ' expect: 2
Say TypeName(box)  ' expect: Boxed
Say IsNumeric(box)  ' expect: True
Say IsObject(box)  ' expect: True
box.Content = Null
Say IsNull(box)  ' expect: True
Say IsNull(box + 1)  ' expect: True
box.Content = "2/25/2004"
Say IsDate(box)  ' expect: True
Say Year(box)  ' expect: 2004
Set poor = New Plain
Say poor + 1  ' expect error 438
Say "" & poor  ' expect error 438
Say VarType(poor)  ' expect: 9
Say IsNumeric(poor)  ' expect: False
Set bad = New Failing
Say bad + 1  ' expect error 11
Say VarType(bad)  ' expect error 11
