' Arithmetic: the type of a result is that of the wider operand, and the next one where it does not fit.
Say TypeName(1 + 1)  ' expect: Integer
Say 32767 + 1  ' expect: 32768
Say TypeName(32767 + 1)  ' expect: Long
Say TypeName(-32767 - 1)  ' expect: Integer
Say TypeName(-32768)  ' expect: Long
Say TypeName(32768)  ' expect: Long
Say TypeName(200 * 200)  ' expect: Long
Say 2147483647 + 1  ' expect: 2147483648
Say TypeName(2147483647 + 1)  ' expect: Double
Say TypeName(65536 * 65536)  ' expect: Double
Say TypeName(1 + 1.5)  ' expect: Double
Say TypeName(CSng(1) + 1)  ' expect: Single
Say TypeName(CSng(1) + CLng(1))  ' expect: Double
Say CSng("0.01") + 0.01  ' expect: 1.99999997764826E-02
Say TypeName(CSng(3E38) * CSng(10))  ' expect: Double
Say TypeName(CByte(200) + CByte(55))  ' expect: Byte
Say TypeName(CByte(200) + CByte(56))  ' expect: Integer
Say CByte(1) - CByte(2)  ' expect: -1
Say TypeName(CByte(1) - CByte(2))  ' expect: Integer
Say TypeName(CByte(1) + 1)  ' expect: Integer
Say TypeName(CByte(1) + True)  ' expect: Integer
Say 1.7E308 * 10  ' expect error 6

' Booleans are -1 and 0, Empty is 0 and leaves the type to the other side.
Say True + True  ' expect: -2
Say TypeName(True + True)  ' expect: Integer
Say 7 + True  ' expect: 6
Say TypeName(Empty + Empty)  ' expect: Integer
Say Empty + 5  ' expect: 5
Say TypeName(Empty + CByte(5))  ' expect: Byte
Say TypeName(Empty * 5)  ' expect: Integer
Say TypeName(Empty + "abc")  ' expect: String
Say "abc" + Empty  ' expect: abc

' Texts that hold numbers count as Doubles, but + joins two of them.
Say "7" + 7  ' expect: 14
Say TypeName("7" + 7)  ' expect: Double
Say "5" + "2"  ' expect: 52
Say "5" - "2"  ' expect: 3
Say "5" * "2"  ' expect: 10
Say "10" / "4"  ' expect: 2.5
Say "1,000" * 2  ' expect: 2000
Say "&H10" + 1  ' expect: 17
Say "abc" + 1  ' expect error 13
Say "" + 1  ' expect error 13
Say "abc" * 2  ' expect error 13

' / always divides exactly.
Say TypeName(4 / 2)  ' expect: Double
Say 1 / 3  ' expect: 0.333333333333333
Say TypeName(CSng(1) / 4)  ' expect: Single
Say TypeName(CCur(1) / 4)  ' expect: Double
Say 1 / 0  ' expect error 11
Say 1.5 / 0  ' expect error 11
Say 1 / Empty  ' expect error 11
Say 0 / 0  ' expect error 6

' \ and Mod round their operands to whole numbers, halves to the even one.
Say 7 \ 2  ' expect: 3
Say -7 \ 2  ' expect: -3
Say TypeName(7 \ 2)  ' expect: Integer
Say 7.5 \ 2  ' expect: 4
Say 6.5 \ 2  ' expect: 3
Say TypeName(7.5 \ 2)  ' expect: Long
Say TypeName(CByte(7) \ CByte(2))  ' expect: Byte
Say "11" \ "4"  ' expect: 2
Say 5 \ 0.4  ' expect error 11
Say 3000000000 \ 1  ' expect error 6
Say (-2147483647 - 1) \ -1  ' expect error 6
Say 10 Mod 3  ' expect: 1
Say -10 Mod 3  ' expect: -1
Say 10 Mod -3  ' expect: 1
Say 19 Mod 6.7  ' expect: 5
Say 12.6 Mod 5  ' expect: 3
Say 12 Mod 4.3  ' expect: 0
Say 12.6 Mod 4.3  ' expect: 1
Say 47.9 Mod 9.35  ' expect: 3
Say TypeName(10 Mod 3)  ' expect: Integer
Say TypeName(12.6 Mod 5)  ' expect: Long
Say 1 Mod 0  ' expect error 11
Say 1 Mod 3000000000  ' expect error 6
Say (-2147483647 - 1) Mod -1  ' expect: 0

' ^ gives a Double.
Say 2 ^ 2  ' expect: 4
Say 3 ^ 3 ^ 3  ' expect: 19683
Say (-5) ^ 3  ' expect: -125
Say -5 ^ 2  ' expect: -25
Say 2 ^ -1  ' expect: 0.5
Say TypeName(2 ^ 2)  ' expect: Double
Say (-8) ^ 0.5  ' expect error 5
Say 0 ^ -1  ' expect error 5
Say 10 ^ 400  ' expect error 6
Say "2" ^ "3"  ' expect: 8

' Signs.
Say TypeName(-CInt(5))  ' expect: Integer
Say -CInt(-32767 - 1)  ' expect: 32768
Say TypeName(-(-32767 - 1))  ' expect: Long
Say TypeName(-(-2147483647 - 1))  ' expect: Double
Say TypeName(-CByte(5))  ' expect: Integer
Say TypeName(-True)  ' expect: Integer
Say -True  ' expect: 1
Say -"5"  ' expect: -5
Say TypeName(-"5")  ' expect: Double
Say TypeName(-Empty)  ' expect: Integer
Say TypeName(-CCur(1))  ' expect: Currency
Say -"x"  ' expect error 13
Say +5  ' expect: 5

' Currency is exact.
Say TypeName(CCur(1) + 1)  ' expect: Currency
Say TypeName(CCur(1) + 1.5)  ' expect: Currency
Say TypeName("1" + CCur(1))  ' expect: Currency
Say CCur(0.1) + CCur(0.2)  ' expect: 0.3
Say TypeName(CCur(2) * 3)  ' expect: Currency
Say TypeName(CCur(2) * 1.5)  ' expect: Double
Say CCur("0.0005") * CCur("0.1")  ' expect: 0
Say CCur("0.0015") * CCur("0.1")  ' expect: 0.0002
Say CCur("-1.5") * CCur("2.5")  ' expect: -3.75
Say CCur("922337203685477.5807") + CCur("0.0001")  ' expect error 6
Say CCur("900000000000000") * 2  ' expect error 6
Say CCur("-922337203685477.5808") * 1  ' expect: -922337203685477.5808

' Dates: a date and a number are a date, two dates differ by a number of days.
Say #2/28/2004# + 1  ' expect: 2/29/2004
Say TypeName(1 + #2/28/2004#)  ' expect: Date
Say #3/1/2004# - #2/28/2004#  ' expect: 2
Say TypeName(#3/1/2004# - #2/28/2004#)  ' expect: Double
Say TypeName(#3/1/2004# - 1)  ' expect: Date
Say TypeName(#3/1/2004# * 1)  ' expect: Double
Say TypeName("1" + #3/1/2004#)  ' expect: Date
Say TypeName(#3/1/2004# + 3000000)  ' expect: Double
Say #1/1/2004 6:00:00 AM# + 0.5  ' expect: 1/1/2004 6:00:00 PM

' Null goes through arithmetic.
Say IsNull(Null + 1)  ' expect: True
Say IsNull("a" + Null)  ' expect: True
Say IsNull(Null * 0)  ' expect: True
Say IsNull(1 / Null)  ' expect: True
Say IsNull(Null \ 0)  ' expect: True
Say IsNull(Null Mod 0)  ' expect: True
Say IsNull(2 ^ Null)  ' expect: True
Say IsNull(-Null)  ' expect: True
Say IsNull(Not Null)  ' expect: True

' & makes texts of everything, and Null counts as empty beside something else.
Say 1 & 2  ' expect: 12
Say TypeName(1 & 2)  ' expect: String
Say "a" & True & 1.5 & Empty & "z"  ' expect: aTrue1.5z
Say "[" & Null & "]"  ' expect: []
Say TypeName(Null & "")  ' expect: String
Say IsNull(Null & Null)  ' expect: True
Say "d" & #2/25/2004#  ' expect: d2/25/2004
Say "" & Nothing  ' expect error 91
Say "" & Array(1)  ' expect error 13
Say 2 + 3 & 4  ' expect: 54

' Logical operators work bit by bit and keep the narrowest common type.
Say True And False  ' expect: False
Say TypeName(True And True)  ' expect: Boolean
Say 10 And 6  ' expect: 2
Say 10 Or 6  ' expect: 14
Say 10 Xor 6  ' expect: 12
Say 10 Eqv 8  ' expect: -3
Say 10 Imp 6  ' expect: -9
Say Not 10  ' expect: -11
Say Not True  ' expect: False
Say Not Empty  ' expect: -1
Say TypeName(True And 1)  ' expect: Integer
Say TypeName(CByte(12) And CByte(10))  ' expect: Byte
Say TypeName(CByte(12) And 10)  ' expect: Integer
Say Not CByte(5)  ' expect: 250
Say TypeName(1 And 100000)  ' expect: Long
Say TypeName(1.5 And 3)  ' expect: Long
Say 2.5 And 3  ' expect: 2
Say "6" And 3  ' expect: 2
Say "True" And True  ' expect: True
Say "x" And 1  ' expect error 13
Say 3000000000 And 1  ' expect error 6
Say &HFF And &H0F  ' expect: 15
Say -1 And &HFFFF&  ' expect: 65535
Say TypeName(Empty Or Empty)  ' expect: Integer

' With Null: what decides alone decides.
Say False And Null  ' expect: False
Say Null And False  ' expect: False
Say IsNull(True And Null)  ' expect: True
Say IsNull(Null And Null)  ' expect: True
Say True Or Null  ' expect: True
Say Null Or True  ' expect: True
Say IsNull(False Or Null)  ' expect: True
Say IsNull(Null Or Null)  ' expect: True
Say Null Or 5  ' expect: 5
Say IsNull(True Xor Null)  ' expect: True
Say IsNull(Null Eqv False)  ' expect: True
Say True Imp True  ' expect: True
Say True Imp False  ' expect: False
Say IsNull(True Imp Null)  ' expect: True
Say False Imp Null  ' expect: True
Say Null Imp True  ' expect: True
Say IsNull(Null Imp False)  ' expect: True
Say IsNull(Null Imp Null)  ' expect: True

' Comparison.
Say 1 = 1.0  ' expect: True
Say 1 < 2  ' expect: True
Say 2 <= 1  ' expect: False
Say True = -1  ' expect: True
Say True < False  ' expect: True
Say CByte(5) = CCur(5)  ' expect: True
Say CCur("922337203685477.5807") > CCur("922337203685477.5806")  ' expect: True
Say CCur(1.1) = 1.1  ' expect: True
Say #1/1/2004# > #12/31/2003#  ' expect: True
Say #12/31/1899# = 1  ' expect: True
Say "a" = "A"  ' expect: False
Say "a" > "B"  ' expect: True
Say "abc" < "abd"  ' expect: True
Say "" < "a"  ' expect: True
Say "10" < "9"  ' expect: True
Say Chr(233) > "z"  ' expect: True
n = 5
t = "5"
Say n = t  ' expect: False
Say n < t  ' expect: True
Say t > 1000000  ' expect: True
Say #1/1/2004# < "1"  ' expect: True
Say True < "a"  ' expect: True
Say Empty = 0  ' expect: True
Say Empty = ""  ' expect: True
Say Empty = Empty  ' expect: True
Say Empty < 1  ' expect: True
Say Empty < "a"  ' expect: True
Say IsNull(Null = Null)  ' expect: True
Say IsNull(1 <> Null)  ' expect: True
Say IsNull("a" < Null)  ' expect: True
Say Array(1) = 1  ' expect error 13
Say Array(1) = "1"  ' expect error 13
Say Nothing = 1  ' expect error 91

' Is.
Say Nothing Is Nothing  ' expect: True
Say CreateObject("Scripting.Dictionary") Is Nothing  ' expect: False
Say 1 Is Nothing  ' expect error 424
Say Empty Is Nothing  ' expect error 424
