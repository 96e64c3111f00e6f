' ---- Names, lines and comments
Dim Total, [my name], [Loop]
TOTAL = 1 : total = Total + 1
Say Total  ' expect: 2
[my name] = "n" : [Loop] = 3
Say [My Name] & [loop]  ' expect: n3
x = 1 + _
    2 + _
    3
Say x  ' expect: 6
Rem x = 7
x = 8 : Rem x = 9
Say x  ' expect: 8
x = "it's" ' a comment
Say x  ' expect: it's
Say "say ""hi""" & """"  ' expect: say "hi""
Property = 1 : Step = 2 : Default = 3 : Error = 4 : Explicit = 5
Say Property & Step & Default & Error & Explicit  ' expect: 12345

' ---- Literals have the smallest type that holds them
Say TypeName(32767) & " " & TypeName(32768) & " " & TypeName(2147483648)  ' expect: Integer Long Double
Say TypeName(1.0) & " " & TypeName(1E2) & " " & TypeName(.5)  ' expect: Double Double Double
Say &HFF & " " & &HFFFF & " " & &HFFFF& & " " & &O17  ' expect: 255 -1 65535 15
Say TypeName(&H7FFF) & " " & TypeName(&H10000) & " " & TypeName(&HFF&)  ' expect: Integer Long Long
Say TypeName(#1/2/2003#) & " " & #2/25/2004 15:05#  ' expect: Date 2/25/2004 3:05:00 PM
Say TypeName(True) & " " & TypeName("") & " " & TypeName(Nothing)  ' expect: Boolean String Nothing
Say TypeName(Empty) & " " & TypeName(Null)  ' expect: Empty Null

' ---- Assignment
x = 5 = 5
Say x  ' expect: True
x = y = 1
Say x  ' expect: False
Let x = 3
Say x  ' expect: 3
Dim one(2)
one(0) = 1 : one(1) = one(0) + 1 : one(2) = one(1) * 5
Say Join(one, "-")  ' expect: 1-2-10
two = one
two(0) = 100
Say one(0) & " " & two(0)  ' expect: 1 100
Set x = 1  ' expect error 424
Set x = Nothing
Say x Is Nothing  ' expect: True
x = Nothing  ' expect error 91

' ---- Constants
Const MyVar = 459, MyString = "HELP", Negative = -1, Twice = --2
Const Day = #1/2/2003#, Yes = True
Say MyVar & MyString & Negative & Twice & " " & Day & " " & Yes  ' expect: 459HELP-12 1/2/2003 True
MyVar = 1  ' expect error 501: Illegal assignment: 'MyVar'
Say MYVAR  ' expect: 459

' ---- With
Class Point
  Public X, Y
  Public Inner
  Public Function Sum(extra)
    Sum = X + Y + extra
  End Function
End Class
Set p = New Point
With p
  .X = 3
  .Y = .X + 1
  Say .Sum(1)  ' expect: 8
  Say .X, .Y  ' expect: 3, 4
  Set .Inner = New Point
  With .Inner
    .X = 10 : .Y = 20
    Say .Sum(p.X)  ' expect: 33
  End With
  Say .Inner.Y  ' expect: 20
End With
With New Point
  .X = 1 : .Y = 2
  Say .Sum(0)  ' expect: 3
End With
' The subject is taken once.
Set q = p
With q
  Set q = Nothing
  Say .X  ' expect: 3
End With
.X = 1  ' expect error 505

' ---- ReDim and Erase, as far as statements go
ReDim grown(1)
grown(0) = "a" : grown(1) = "b"
ReDim Preserve grown(3)
Say Join(grown, ",") & UBound(grown)  ' expect: a,b,,3
ReDim grown(UBound(grown) + 1)
Say "[" & grown(0) & "]" & UBound(grown)  ' expect: []4
Dim fixed(1)
fixed(0) = 1
Erase fixed
Say TypeName(fixed(0)) & UBound(fixed)  ' expect: Empty1
ReDim fixed(3)  ' expect error 10
Erase grown
grown(0) = 1  ' expect error 9

' ---- Stop does nothing
Stop
Say "on"  ' expect: on
