' CInt and CLng round halves to the even neighbour.
Say CInt(2345.5678)  ' expect: 2346
Say CInt(0.5)  ' expect: 0
Say CInt(1.5)  ' expect: 2
Say CInt(2.5)  ' expect: 2
Say CInt(-2.5)  ' expect: -2
Say CInt("2.5")  ' expect: 2
Say CInt(" 12 ")  ' expect: 12
Say CInt(True)  ' expect: -1
Say CInt(Empty)  ' expect: 0
Say CInt(32767.4)  ' expect: 32767
Say CInt(32767.5)  ' expect error 6
Say CInt(-32768.5)  ' expect: -32768
Say CInt("x")  ' expect error 13
Say CInt("")  ' expect error 13
Say CInt(Null)  ' expect error 94
Say CInt(Array(1))  ' expect error 13
Say CInt(Nothing)  ' expect error 91
Say CInt(CreateObject("Scripting.Dictionary"))  ' expect error 450
Say TypeName(CInt("7"))  ' expect: Integer
Say CLng(25427.45)  ' expect: 25427
Say CLng(25427.55)  ' expect: 25428
Say CLng("2147483647.4")  ' expect: 2147483647
Say CLng("2147483648")  ' expect error 6
Say CLng("1e400")  ' expect error 6
Say TypeName(CLng(7))  ' expect: Long
Say CInt(#1/1/1900#)  ' expect: 2

' &H and &O in texts fill the type wanted.
Say CInt("&HFFFF")  ' expect: -1
Say CLng("&HFFFF")  ' expect: 65535
Say CLng("&hff")  ' expect: 255
Say CLng("&O17")  ' expect: 15
Say CLng("&HFFFFFFFF")  ' expect: -1
Say CDbl("&HFFFFFFFF")  ' expect: 4294967295
Say CLng("&HFFFF&")  ' expect: 65535
Say CLng("&H")  ' expect error 13
Say CLng("&HG")  ' expect error 13
Say CByte("&HFF")  ' expect: 255

' CByte.
Say CByte(125.5678)  ' expect: 126
Say CByte(255.4)  ' expect: 255
Say CByte(255.5)  ' expect error 6
Say CByte(-0.5)  ' expect: 0
Say CByte(-1)  ' expect error 6
Say CByte("256")  ' expect error 6
Say TypeName(CByte(1))  ' expect: Byte

' CBool.
Say CBool(5 = 5)  ' expect: True
Say CBool(0)  ' expect: False
Say CBool(-0.1)  ' expect: True
Say CBool("True")  ' expect: True
Say CBool("FALSE")  ' expect: False
Say CBool("0")  ' expect: False
Say CBool("1.5")  ' expect: True
Say CBool(Empty)  ' expect: False
Say CBool("yes")  ' expect error 13
Say CBool("")  ' expect error 13
Say CBool(Null)  ' expect error 94
Say CBool(#12/30/1899#)  ' expect: False

' CCur has four places, the fifth rounds to the even digit.
Say CCur(543.214588 * 2)  ' expect: 1086.4292
Say CCur("1086.42925")  ' expect: 1086.4292
Say CCur("1086.42935")  ' expect: 1086.4294
Say CCur("1086.429250000000000001")  ' expect: 1086.4293
Say CCur("922337203685477.5807")  ' expect: 922337203685477.5807
Say CCur("922337203685477.5808")  ' expect error 6
Say CCur("-922337203685477.5808")  ' expect: -922337203685477.5808
Say CCur("($1,234.50)")  ' expect: -1234.5
Say CCur("0.00004")  ' expect: 0
Say CCur(1E15)  ' expect error 6
Say TypeName(CCur(1))  ' expect: Currency
Say CCur(True)  ' expect: -1

' CDbl, CSng.
Say CDbl(CCur(234.456784) * 8.2 * 0.01)  ' expect: 19.2254576
Say CSng(75.3421115)  ' expect: 75.34211
Say CSng(75.3421555)  ' expect: 75.34216
Say CSng(1E39)  ' expect error 6
Say CSng("1E-60")  ' expect: 0
Say CDbl("1E308")  ' expect: 1E+308
Say CDbl("1E309")  ' expect error 6
Say CDbl("-1d2")  ' expect: -100
Say CDbl("  -  5  ")  ' expect: -5
Say CDbl("5-")  ' expect: -5
Say CDbl("(5)")  ' expect: -5
Say CDbl("$5")  ' expect: 5
Say CDbl(".5")  ' expect: 0.5
Say CDbl("5.")  ' expect: 5
Say CDbl("1,2,3")  ' expect: 123
Say CDbl(".")  ' expect error 13
Say CDbl("1e")  ' expect error 13
Say CDbl("1.2.3")  ' expect error 13
Say CDbl("1 2")  ' expect error 13
Say CDbl("(5")  ' expect error 13
Say CDbl("--5")  ' expect error 13
Say CDbl("5x")  ' expect error 13
Say CDbl("True")  ' expect error 13
Say CDbl(#1/1/2004 12:00:00 PM#)  ' expect: 37987.5
Say CDbl("0.1") = 0.1  ' expect: True
Say CDbl("9007199254740993") = 9007199254740992  ' expect: True

' CDate.
Say CDate("October 19, 1962")  ' expect: 10/19/1962
Say CDate("4:35:47 PM")  ' expect: 4:35:47 PM
Say CDate(38042)  ' expect: 2/25/2004
Say CDate("38042")  ' expect: 2/25/2004
Say CDate(-657434)  ' expect: 1/1/100
Say CDate(2958465)  ' expect: 12/31/9999
Say CDate(2958466)  ' expect error 6
Say CDate(-657435)  ' expect error 6
Say CDate("Wednesday, February 25, 2004")  ' expect error 13
Say CDate("soon")  ' expect error 13
Say CDate(Null)  ' expect error 94
Say CDate(Empty)  ' expect: 12:00:00 AM
Say TypeName(CDate("1/1/2004"))  ' expect: Date

' CStr.
Say CStr(437.324)  ' expect: 437.324
Say TypeName(CStr(5))  ' expect: String
Say CStr(True)  ' expect: True
Say "[" & CStr(Empty) & "]"  ' expect: []
Say CStr(Null)  ' expect error 94
Say CStr(#2/25/2004 3:05:10 PM#)  ' expect: 2/25/2004 3:05:10 PM
Say CStr(#2/25/2004#)  ' expect: 2/25/2004
Say CStr(#3:05:10 PM#)  ' expect: 3:05:10 PM
Say CStr(CCur("5.10"))  ' expect: 5.1
Say CStr(CByte(7))  ' expect: 7
Say CStr(Array(1))  ' expect error 13
Say CStr(-32768)  ' expect: -32768

' Numbers as texts: 15 digits, 7 for a Single; plain as long as the places suffice.
Say 1 / 3  ' expect: 0.333333333333333
Say 1 / 30  ' expect: 3.33333333333333E-02
Say 2 / 3  ' expect: 0.666666666666667
Say 0.1 + 0.2  ' expect: 0.3
Say 9.2 * 100  ' expect: 920
Say 100000000000000  ' expect: 100000000000000
Say 999999999999999  ' expect: 999999999999999
Say 1000000000000000  ' expect: 1E+15
Say 999999999999999.9  ' expect: 1E+15
Say 123456789012345678  ' expect: 1.23456789012346E+17
Say 0.0001  ' expect: 0.0001
Say 0.000000000000001  ' expect: 0.000000000000001
Say 1E-16  ' expect: 1E-16
Say 1.5E-300  ' expect: 1.5E-300
Say 1.79769313486231E308 / 10  ' expect: 1.79769313486231E+307
Say -0.0 * 1  ' expect: 0
Say -1.5  ' expect: -1.5
Say 1E3  ' expect: 1000
Say CSng(0.1)  ' expect: 0.1
Say CSng(1) / 3  ' expect: 0.3333333
Say CSng(16777216)  ' expect: 1.677722E+07
Say CSng(9999999)  ' expect: 9999999
Say CDbl(CSng(0.1))  ' expect: 0.100000001490116

' Hex and Oct show the bits of the type.
Say Hex(5)  ' expect: 5
Say Hex(10)  ' expect: A
Say Hex(459)  ' expect: 1CB
Say Hex(-1)  ' expect: FFFF
Say Hex(CLng(-1))  ' expect: FFFFFFFF
Say Hex(-1.0)  ' expect: FFFFFFFF
Say Hex(2.5)  ' expect: 2
Say Hex("255")  ' expect: FF
Say Hex(True)  ' expect: FFFF
Say Hex(Empty)  ' expect: 0
Say IsNull(Hex(Null))  ' expect: True
Say Hex(4294967295)  ' expect error 6
Say Oct(4)  ' expect: 4
Say Oct(8)  ' expect: 10
Say Oct(459)  ' expect: 713
Say Oct(-1)  ' expect: 177777
Say Oct(CLng(-1))  ' expect: 37777777777
Say IsNull(Oct(Null))  ' expect: True

' A Currency has more digits than a Double can scale at once.
Say CCur(922337203685477)  ' expect: 922337203685477
Say CCur(-922337203685477.5)  ' expect: -922337203685477.5
Say CCur(922337203685478)  ' expect error 6
