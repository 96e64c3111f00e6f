' Abs, Int, Fix and Round keep the type.
Say Abs(50.3)  ' expect: 50.3
Say Abs(-50.3)  ' expect: 50.3
Say TypeName(Abs(-5))  ' expect: Integer
Say Abs(-32767 - 1)  ' expect: 32768
Say TypeName(Abs(-32767 - 1))  ' expect: Long
Say TypeName(Abs(-2147483647 - 1))  ' expect: Double
Say TypeName(Abs(CByte(5)))  ' expect: Byte
Say TypeName(Abs(CSng(-1.5)))  ' expect: Single
Say Abs(True)  ' expect: 1
Say TypeName(Abs("-5"))  ' expect: Double
Say Abs(CCur(-1.5))  ' expect: 1.5
Say IsNull(Abs(Null))  ' expect: True
Say Abs(Empty)  ' expect: 0
Say Abs("x")  ' expect error 13
Say Abs(Array(1))  ' expect error 13

Say Int(99.8)  ' expect: 99
Say Fix(99.2)  ' expect: 99
Say Int(-99.8)  ' expect: -100
Say Fix(-99.8)  ' expect: -99
Say Int(-99.2)  ' expect: -100
Say Fix(-99.2)  ' expect: -99
Say TypeName(Int(99.8))  ' expect: Double
Say TypeName(Int(5))  ' expect: Integer
Say TypeName(Int("5.5"))  ' expect: Double
Say TypeName(Fix(CCur(5.5)))  ' expect: Currency
Say Int(CCur(-5.5))  ' expect: -6
Say Fix(CCur(-5.5))  ' expect: -5
Say Int(#2/25/2004 6:00:00 PM#)  ' expect: 2/25/2004
Say IsNull(Int(Null))  ' expect: True
Say IsNull(Fix(Null))  ' expect: True
Say Int(True)  ' expect: -1

Say Round(3.14159, 2)  ' expect: 3.14
Say Round(2.5)  ' expect: 2
Say Round(3.5)  ' expect: 4
Say Round(-2.5)  ' expect: -2
Say Round(0.125, 2)  ' expect: 0.12
Say Round(0.375, 2)  ' expect: 0.38
Say Round(12345, 2)  ' expect: 12345
Say TypeName(Round(2.5))  ' expect: Double
Say TypeName(Round(7))  ' expect: Integer
Say TypeName(Round("2.7"))  ' expect: Double
Say Round(CCur("2.3450"), 2)  ' expect: 2.34
Say Round(CCur("2.3550"), 2)  ' expect: 2.36
Say Round(CCur("-0.5"))  ' expect: 0
Say CDbl(Round(CSng(2.71828), 2)) = CDbl(CSng(2.72))  ' expect: True
Say Round(1.5E300, 22)  ' expect: 1.5E+300
Say IsNull(Round(Null))  ' expect: True
Say Round(1, -1)  ' expect error 5
Say Round(1, 23)  ' expect error 5

Say Sgn(12)  ' expect: 1
Say Sgn(-2.4)  ' expect: -1
Say Sgn(0)  ' expect: 0
Say Sgn("-3")  ' expect: -1
Say TypeName(Sgn(2.5))  ' expect: Integer
Say Sgn(Null)  ' expect error 94

Say Sqr(4)  ' expect: 2
Say Sqr(23)  ' expect: 4.79583152331272
Say Sqr(0)  ' expect: 0
Say Sqr(-4)  ' expect error 5
Say Log(1)  ' expect: 0
Say Log(100) / Log(10)  ' expect: 2
Say Log(0)  ' expect error 5
Say Log(-1)  ' expect error 5
Say Exp(1)  ' expect: 2.71828182845905
Say Exp(710)  ' expect error 6
Say 4 * Atn(1)  ' expect: 3.14159265358979
Say Sin(0)  ' expect: 0
Say Cos(0)  ' expect: 1
Say 1 / Sin(1.3)  ' expect: 1.0378200456748
Say 1 / Tan(1.3)  ' expect: 0.277615646541125
Say Sin(Null)  ' expect error 94
Say Sin("x")  ' expect error 13

Say RGB(255, 0, 0)  ' expect: 255
Say RGB(0, 255, 0)  ' expect: 65280
Say RGB(75, 139, 203)  ' expect: 13339467
Say RGB(300, 300, 300)  ' expect: 16777215
Say TypeName(RGB(0, 0, 0))  ' expect: Long
Say RGB(-1, 0, 0)  ' expect error 5

' The row of Rnd is always the same without Randomize.
Say Rnd  ' expect: 0.7055475
Say Rnd()  ' expect: 0.533424
Say Rnd(1)  ' expect: 0.5795186
Say Rnd(0)  ' expect: 0.5795186
Say TypeName(Rnd)  ' expect: Single
Say Rnd(-1)  ' expect: 0.224007
Randomize 1
Say Rnd  ' expect: 0.3335753
Say Rnd(-1)  ' expect: 0.224007
Randomize "1"
Say Rnd  ' expect: 0.3335753
Randomize
x = Rnd
Say x >= 0 And x < 1  ' expect: True
Say Int((6 * Rnd) + 1) <= 6  ' expect: True
