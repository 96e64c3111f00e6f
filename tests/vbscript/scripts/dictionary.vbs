Set d = CreateObject("Scripting.Dictionary")
Say TypeName(d)  ' expect: Dictionary
d.Add "a", "Athens"
d.Add "b", "Belgrade"
d.Add "c", "Cairo"
Say d.Count  ' expect: 3
Say d.Exists("b")  ' expect: True
Say d.Exists("B")  ' expect: False
Say d.Item("b")  ' expect: Belgrade
Say d("c")  ' expect: Cairo
d("c") = "Cordoba"
d.Item("e") = "Essen"
Say Join(d.Keys, "") & " " & Join(d.Items, ",")  ' expect: abce Athens,Belgrade,Cordoba,Essen
d.Add "a", "Aachen"  ' expect error 457
d.Remove "b"
Say Join(d.Keys, "")  ' expect: ace
d.Remove "b"  ' expect error 32811
d.Key("a") = "z"
Say Join(d.Keys, "")  ' expect: zce
Say d("z")  ' expect: Athens
d.Key("nothing") = "y"  ' expect error 32811
d.Key("c") = "e"  ' expect error 457

' A key that is not there is added by reading it.
Say IsEmpty(d("new"))  ' expect: True
Say d.Count  ' expect: 4
keys = ""
For Each k In d : keys = keys & k & "," : Next
Say keys  ' expect: z,c,e,new,

' Keys of all types: numbers by value, texts apart from them.
d.RemoveAll
Say d.Count  ' expect: 0
d.Add 1, "one"
Say d.Exists(1.0)  ' expect: True
Say d.Exists(CLng(1))  ' expect: True
Say d.Exists("1")  ' expect: False
d.Add "1", "text"
d.Add Empty, "empty"
Say d.Exists(Empty) & d.Exists("") & d.Exists(0)  ' expect: TrueFalseFalse
d.Add d, "itself"
Say d(d)  ' expect: itself
d.Add Array(1), 1  ' expect error 5

' Objects as items.
Set e = CreateObject("scripting.dictionary")
Set d("inner") = e
d("inner")("x") = 5
Say e("x")  ' expect: 5
d("inner").Item("y") = 6
Say e.Count  ' expect: 2

' CompareMode only while it is empty.
Set t = CreateObject("Scripting.Dictionary")
t.CompareMode = 1
t.Add "Key", 1
Say t.Exists("KEY")  ' expect: True
t("kEY") = 2
Say t.Count & t("Key")  ' expect: 12
t.CompareMode = 0  ' expect error 5
Say t.Nonsense  ' expect error 438
Say d.Add("q")  ' expect error 450

' Many, with removals in between.
Set m = CreateObject("Scripting.Dictionary")
For i = 1 To 1000 : m.Add "k" & i, i : Next
For i = 1 To 1000 Step 2 : m.Remove "k" & i : Next
For i = 1001 To 1500 : m.Add "k" & i, i : Next
sum = 0
For Each k In m : sum = sum + m(k) : Next
Say m.Count & " " & sum  ' expect: 1000 875750
