' ---- Array, LBound, UBound
a = Array(10, "x", Array(1, 2))
Say UBound(a)  ' expect: 2
Say LBound(a)  ' expect: 0
Say a(2)(1)  ' expect: 2
Say UBound(Array())  ' expect: -1
Say TypeName(Array())  ' expect: Variant()
Say VarType(a)  ' expect: 8204
Dim b(3, 4)
Say UBound(b, 1) & UBound(b, 2)  ' expect: 34
Say UBound(b, 3)  ' expect error 9
Say UBound(b, 0)  ' expect error 9
Say UBound(5)  ' expect error 13
Dim c()
Say UBound(c)  ' expect error 9

' ---- Join
Say Join(Array("Mr.", "John", "Doe", "III"))  ' expect: Mr. John Doe III
Say Join(Array(1, 2.5, True), "-")  ' expect: 1-2.5-True
Say Join(Array("a"), ",")  ' expect: a
Say Join(Array(), ",")  ' expect:
Say Join(Array("a", "b"), "")  ' expect: ab
Say Join("a")  ' expect error 13
Say Join(b)  ' expect error 5

' ---- Split
p = Split("VBScriptXisXfun!", "x", -1, 1)
Say Join(p, "|")  ' expect: VBScript|is|fun!
Say Join(Split("a b  c"), "|")  ' expect: a|b||c
Say Join(Split("a,b,c", ",", 2), "|")  ' expect: a|b,c
Say Join(Split("a,b,c", ",", 1), "|")  ' expect: a,b,c
Say UBound(Split("a,b,c", ",", 0))  ' expect: -1
Say UBound(Split("", ","))  ' expect: -1
Say UBound(Split("abc", ""))  ' expect: 0
Say Join(Split(",a,", ","), "|")  ' expect: |a|
Say Split("a", ",", -2)  ' expect error 5
Say Split(Null, ",")  ' expect error 94

' ---- Filter
Say Join(Filter(Array("Sunday", "Monday", "Tuesday"), "Mon"), ",")  ' expect: Monday
Say Join(Filter(Array("Sunday", "Monday", "Tuesday"), "day", False), ",")  ' expect:
Say Join(Filter(Array("Sunday", "Monday", "Tuesday"), "s", True, 1), ",")  ' expect: Sunday,Tuesday
Say UBound(Filter(Array("a"), "b"))  ' expect: -1
Say Filter("a", "a")  ' expect error 13
