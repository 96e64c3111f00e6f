' ---- Len and parts
Say Len("VBSCRIPT")  ' expect: 8
Say Len("")  ' expect: 0
Say Len(12345)  ' expect: 5
Say IsNull(Len(Null))  ' expect: True
Say TypeName(Len("x"))  ' expect: Long
Say Left("VBScript", 3)  ' expect: VBS
Say Left("abc", 0)  ' expect:
Say Left("abc", 10)  ' expect: abc
Say Left("abc", -1)  ' expect error 5
Say Left("abc", "2")  ' expect: ab
Say IsNull(Left(Null, 1))  ' expect: True
Say Left("abc", Null)  ' expect error 94
Say Right("AnyString", 1)  ' expect: g
Say Right("AnyString", 6)  ' expect: String
Say Right("AnyString", 20)  ' expect: AnyString
Say Right("abc", -1)  ' expect error 5
Say Mid("VB Script is fun!", 4, 6)  ' expect: Script
Say Mid("abc", 2)  ' expect: bc
Say Mid("abc", 4)  ' expect:
Say Mid("abc", 100, 5)  ' expect:
Say Mid("abc", 3, 100)  ' expect: c
Say Mid("abc", 0)  ' expect error 5
Say Mid("abc", 1, -1)  ' expect error 5
Say IsNull(Mid(Null, 1))  ' expect: True

' ---- InStr and InStrRev
SearchString = "XXpXXpXXPXXP"
Say InStr(4, SearchString, "P", 1)  ' expect: 6
Say InStr(1, SearchString, "P", 0)  ' expect: 9
Say InStr(SearchString, "P")  ' expect: 9
Say InStr(1, SearchString, "W")  ' expect: 0
Say InStr("", "a")  ' expect: 0
Say InStr("abc", "")  ' expect: 1
Say InStr(3, "abc", "")  ' expect: 3
Say InStr(4, "abc", "a")  ' expect: 0
Say InStr(0, "abc", "a")  ' expect error 5
Say InStr(1, "abc", "A", 2)  ' expect error 5
Say IsNull(InStr(Null, "a"))  ' expect: True
Say IsNull(InStr("a", Null))  ' expect: True
Say InStr(Null, "abc", "a")  ' expect error 94
Say InStrRev(SearchString, "P", 10, 0)  ' expect: 9
Say InStrRev(SearchString, "P", -1, 1)  ' expect: 12
Say InStrRev(SearchString, "P", 8)  ' expect: 0
Say InStrRev("abcabc", "bc")  ' expect: 5
Say InStrRev("abcabc", "bc", 5)  ' expect: 2
Say InStrRev("abcabc", "abc", 3)  ' expect: 1
Say InStrRev("abc", "")  ' expect: 3
Say InStrRev("", "a")  ' expect: 0
Say InStrRev("abc", "abcd")  ' expect: 0
Say InStrRev("abc", "b", 10)  ' expect: 0
Say InStrRev("abc", "b", 0)  ' expect error 5
Say IsNull(InStrRev(Null, "a"))  ' expect: True

' ---- Replace
Say Replace("XXpXXPXXp", "p", "Y")  ' expect: XXYXXPXXY
Say Replace("XXpXXPXXp", "p", "Y", 3, -1, 1)  ' expect: YXXYXXY
Say Replace("aaaa", "a", "bb", 1, 2)  ' expect: bbbbaa
Say Replace("aaaa", "aa", "a")  ' expect: aa
Say Replace("abc", "", "x")  ' expect: abc
Say Replace("", "a", "x")  ' expect:
Say Replace("abc", "b", "x", 2)  ' expect: xc
Say Replace("abc", "b", "x", 9)  ' expect:
Say Replace("abc", "b", "")  ' expect: ac
Say Replace("abc", "b", "x", 1, 0)  ' expect: abc
Say Replace("abc", "b", "x", 0)  ' expect error 5
Say Replace(Null, "b", "x")  ' expect error 94

' ---- Trimming, case, order
Say "[" & Trim("  a b  ") & "]"  ' expect: [a b]
Say "[" & LTrim("  a b  ") & "]"  ' expect: [a b  ]
Say "[" & RTrim("  a b  ") & "]"  ' expect: [  a b]
Say "[" & Trim("   ") & "][" & RTrim("") & "]"  ' expect: [][]
Say Len(Trim(vbTab & " a"))  ' expect: 3
Say UCase("abC1" & Chr(228) & Chr(255)) = "ABC1" & Chr(196) & Chr(159)  ' expect: True
Say LCase("ABc1" & Chr(196) & Chr(138)) = "abc1" & Chr(228) & Chr(154)  ' expect: True
Say UCase(Chr(223) & Chr(247)) = Chr(223) & Chr(247)  ' expect: True
Say IsNull(UCase(Null))  ' expect: True
Say StrComp("ABCD", "abcd", 1)  ' expect: 0
Say StrComp("ABCD", "abcd", 0)  ' expect: -1
Say StrComp("abcd", "ABCD")  ' expect: 1
Say StrComp("a", "ab")  ' expect: -1
Say IsNull(StrComp("a", Null))  ' expect: True

' ---- Making texts
Say String(5, "*")  ' expect: *****
Say String(5, 42)  ' expect: *****
Say String(3, "ABC")  ' expect: AAA
Say String(0, "a")  ' expect:
Say Asc(String(1, 321))  ' expect: 65
Say String(-1, "a")  ' expect error 5
Say String(2, "")  ' expect error 5
Say "[" & Space(3) & "]"  ' expect: [   ]
Say Space(-1)  ' expect error 5
Say StrReverse("VBScript")  ' expect: tpircSBV
Say StrReverse("")  ' expect:
Say StrReverse(Null)  ' expect error 94
Say Len(Space(20000000))  ' expect error 14

' ---- Codes
Say Asc("A")  ' expect: 65
Say Asc("Apple")  ' expect: 65
Say Asc("")  ' expect error 5
Say Asc(Chr(200))  ' expect: 200
Say AscW(Chr(128))  ' expect: 8364
Say Asc(ChrW(8364))  ' expect: 128
Say ChrW(20000)  ' expect: ?
Say Chr(65)  ' expect: A
Say Chr(256)  ' expect error 5
Say Chr(-1)  ' expect error 5
Say Escape("a b" & Chr(228) & ChrW(8364))  ' expect: a%20b%E4%u20AC
Say Unescape("a%20b%E4%u20AC%zz%") = "a b" & Chr(228) & Chr(128) & "%zz%"  ' expect: True

' ---- Numbers of arguments
Say Left("a")  ' expect error 450
Say Len()  ' expect error 450
Say Mid("a", 1, 1, 1)  ' expect error 450
