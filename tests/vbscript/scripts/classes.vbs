' ---- Members
Class Counter
  Private count_
  Public Name
  Dim Plain
  Public Slots(2)

  Private Sub Class_Initialize()
    count_ = 10
    Name = "new"
  End Sub

  Public Sub Add(n)
    count_ = count_ + n
  End Sub

  Public Function Twice
    Twice = Doubled(count_)
  End Function

  Private Function Doubled(n)
    Doubled = n * 2
  End Function

  Public Property Get Count
    Count = count_
  End Property

  Public Property Let Count(value)
    If value < 0 Then Err.Raise 1000, "Counter", "negative"
    count_ = value
  End Property

  Public Function Self
    Set Self = Me
  End Function

  Public Sub Rename(name)
    Me.Name = name
  End Sub
End Class

Set c = New Counter
Say c.Count & c.Name & TypeName(c) & TypeName(c.Plain)  ' expect: 10newCounterEmpty
c.Add 5
Say c.count  ' expect: 15
Say c.Twice & " " & c.Twice()  ' expect: 30 30
c.Count = 3
Say c.Count  ' expect: 3
c.Count = -1  ' expect error 1000: negative
c.Slots(1) = "slot"
Say c.Slots(1) & UBound(c.Slots)  ' expect: slot2
c.Rename "renamed"
Say c.Name  ' expect: renamed
Say c.Self.Self.Count  ' expect: 3
c.Self.Count = 8
Say c.Count  ' expect: 8
c.count_ = 1  ' expect error 438
x = c.Doubledd(1)  ' expect error 438
x = c.Missing  ' expect error 438
c.Missing = 1  ' expect error 438
c.Add  ' expect error 450
x = c + 1  ' expect error 438

' ---- Objects are shared, compared by Is
Set e = c
e.Count = 99
Say c.Count  ' expect: 99
Say (c Is e) & (c Is New Counter)  ' expect: TrueFalse
Set e = Nothing
Say e Is Nothing  ' expect: True
Say e.Count  ' expect error 91
x = 5
Say x.Count  ' expect error 424
Set n = New Nobody  ' expect error 506: Class not defined: 'Nobody'
Say IsObject(c) & VarType(e)  ' expect: True9

' ---- Properties with arguments, Set, default
Class Table
  Private cells, parent_
  Private Sub Class_Initialize
    Set cells = CreateObject("Scripting.Dictionary")
  End Sub
  Public Default Property Get Item(row, column)
    Item = cells(row & "," & column)
  End Property
  Public Property Let Item(row, column, value)
    cells(row & "," & column) = value
  End Property
  Public Property Set Parent(value)
    Set parent_ = value
  End Property
  Public Property Get Parent
    Set Parent = parent_
  End Property
End Class
Set t = New Table
t.Item(1, 2) = "cell"
Say t.Item(1, 2)  ' expect: cell
t(3, 4) = "default"
Say t(3, 4) & t.Item(3, 4)  ' expect: defaultdefault
Set t.Parent = c
Say t.Parent.Count  ' expect: 99
t.Parent.Count = 5
Say c.Count  ' expect: 5
t.Parent = 1  ' expect error 438

Class Money
  Public Amount
  Public Default Function Value
    Value = Amount
  End Function
End Class
Set m = New Money
m.Amount = 12
Say m + 1  ' expect: 13
Say "m" & m  ' expect: m12
Say m = 12  ' expect: True
Say CStr(m) & Len(m)  ' expect: 122
v = m
Say TypeName(v)  ' expect: Integer
Say m()  ' expect: 12
If m > 10 Then Say "more"  ' expect: more
Dim list(1)
Set list(0) = m
Say list(0).Amount & list(0)  ' expect: 1212

' ---- Arrays of arrays and objects within objects
Class Node
  Public Value, NextNode
End Class
Set head = Nothing
For i = 1 To 4
  Set node1 = New Node
  node1.Value = i
  Set node1.NextNode = head
  Set head = node1
Next
s = ""
Set walk = head
Do Until walk Is Nothing
  s = s & walk.Value
  Set walk = walk.NextNode
Loop
Say s  ' expect: 4321
Say head.NextNode.NextNode.Value  ' expect: 2
head.Value = Array(1, Array("x", "y"))
Say head.Value(1)(0)  ' expect: x

' ---- Members before script-level names
Count = "global"
Class Hides
  Public Count
  Public Sub Show
    Count = "member"
    Say Count & Other  ' expect: memberglobal other
  End Sub
End Class
Other = "global other"
Set h = New Hides
h.Show
Say Count  ' expect: global

' ---- The end of an object
Class Tracked
  Public Name
  Private Sub Class_Terminate
    trace = trace & "-" & Name
  End Sub
End Class
Function Track(name)
  Set Track = New Tracked
  Track.Name = name
  trace = trace & "+" & name
End Function
trace = ""
Set a = Track("a")
Set b = a
Set a = Nothing
Say trace  ' expect: +a
Set b = Nothing
Say trace  ' expect: +a-a
trace = ""
Set a = Track("a")
Set a = Track("b")
Say trace  ' expect: +a+b-a
trace = ""
Sub Local
  Dim one
  Set one = Track("one")
  trace = trace & "."
End Sub
Local
Say trace  ' expect: +one.-one
trace = ""
Track "unused"
Say trace  ' expect: +unused-unused
trace = ""
Say Track("temporary").Name  ' expect: temporary
Say trace  ' expect: +temporary-temporary
trace = ""
Set d = CreateObject("Scripting.Dictionary")
d.Add "k", Track("held")
d.RemoveAll
Say trace  ' expect: +held-held
trace = ""
list1 = Array(Track("x"), Track("y"))
list1 = Empty
Say trace  ' expect: +x+y-x-y
trace = ""
With Track("with")
  trace = trace & "."
End With
Say trace  ' expect: +with.-with

' ---- The last error does not come from a terminator
Class Failing
  Private Sub Class_Terminate
    x = 1 / 0
  End Sub
End Class
Set f = New Failing
Set f = Nothing
Say "still here"  ' expect: still here

' ---- An error in Class_Initialize
Class Broken
  Private Sub Class_Initialize
    Err.Raise 2000, "Broken", "no start"
  End Sub
End Class
Set x = New Broken  ' expect error 2000: no start
