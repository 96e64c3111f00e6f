Set r = New RegExp
Say TypeName(r)  ' expect: IRegExp2
r.Pattern = "is."
r.IgnoreCase = True
r.Global = True
s = ""
For Each m In r.Execute("IS1 is2 IS3 is4") : s = s & m.FirstIndex & ":" & m.Value & ":" & m.Length & " " : Next
Say s  ' expect: 0:IS1:3 4:is2:3 8:IS3:3 12:is4:3 
r.Global = False
Say r.Execute("IS1 is2").Count  ' expect: 1
Say r.Test("none here")  ' expect: False
Say r.Test("thIS.")  ' expect: True
Say r.Execute("x is2").Item(0)  ' expect: is2
Say r.Execute("x is2")(0).Value  ' expect: is2
Say r.Execute("x is2")(1)  ' expect error 5

' ---- Replace
r.Pattern = "(\w+)@(\w+)\.com"
r.Global = True
Say r.Replace("a@b.com, c@d.com", "$2 at $1")  ' expect: b at a, d at c
Say r.Replace("a@b.com", "[$&]$$ $3 $0")  ' expect: [a@b.com]$ $3 $0
Say r.Replace("x a@b.com y", "<$`|$'>")  ' expect: x <x | y> y
r.Pattern = "x*"
Say r.Replace("abc", "-")  ' expect: -a-b-c-
r.Pattern = "fox"
r.Global = False
Say r.Replace("fox Fox", "cat")  ' expect: cat Fox

' ---- SubMatches
r.Pattern = "(\d+)-(\d+)(-x)?"
Set ms = r.Execute("tel 12-345 end")
Say ms(0).SubMatches.Count  ' expect: 3
Say ms(0).SubMatches(0) & "/" & ms(0).SubMatches(1)  ' expect: 12/345
Say IsEmpty(ms(0).SubMatches(2))  ' expect: True

' ---- What patterns mean
Function Finds(pattern, text)
  Set r = CreateObject("VBScript.RegExp")
  r.Pattern = pattern
  r.Global = True
  Finds = ""
  For Each m In r.Execute(text) : Finds = Finds & "[" & m & "]" : Next
End Function
Say Finds("^a|b$", "a b")  ' expect: [a][b]
Say Finds("a$", "a" & vbLf)  ' expect:
Say Finds("a.c", "abc a" & vbLf & "c")  ' expect: [abc]
Say Finds("(a)(b)?\2c", "ac")  ' expect: [ac]
Say Finds("(a)\1", "aa")  ' expect: [aa]
Say Finds("\101\x42\u0043", "ABC")  ' expect: [ABC]
Say Finds("\bfree\b", "free, freedom free")  ' expect: [free][free]
Say Finds("a(?=b)", "ab ac")  ' expect: [a]
Say Finds("a(?!b).", "ab ac")  ' expect: [ac]
Say Finds("(?:ab)+?", "abab")  ' expect: [ab][ab]
Say Finds("a{2}", "aaaa a{2}")  ' expect: [aa][aa]
Say Finds("a{x}", "a{x}")  ' expect: [a{x}]
Say Finds("[[:alpha:]]", "a]:]")  ' expect: [a]][:]]
Say Finds("\Aa\Z", "AaZ")  ' expect: [AaZ]
Say Finds("\v", Chr(11))  = "[" & Chr(11) & "]"  ' expect: True
Say Finds("\u20AC", "5" & Chr(128)) = "[" & Chr(128) & "]"  ' expect: True
Say Finds("[\b]", Chr(8)) = "[" & Chr(8) & "]"  ' expect: True
Say Finds("\w+", "a" & Chr(228) & "b")  ' expect: [a][b]
Set c = New RegExp
c.IgnoreCase = True
c.Pattern = Chr(228)
Say c.Test(Chr(196))  ' expect: True
c.MultiLine = True
c.Pattern = "^b$"
Say c.Test("a" & vbLf & "b" & vbLf & "c")  ' expect: True
c.Pattern = ""
Say c.Test("")  ' expect: True

' ---- Patterns that are none
Say Finds("a(", "")  ' expect error 5020
Say Finds("a[b", "")  ' expect error 5019
Say Finds("*a", "")  ' expect error 5018
Say Finds("a**", "")  ' expect error 5018
Say Finds("a++", "")  ' expect error 5018
Say Finds("(?<=a)b", "")  ' expect error 5018
Say Finds("(*COMMIT)a", "")  ' expect error 5018
Say Finds("[z-a]", "")  ' expect error 5021
Say Finds("a)", "")  ' expect error 5017
Say Finds("a\", "")  ' expect error 5017
