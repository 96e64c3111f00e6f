Say FormatNumber(1 / Cos(1.3), 4)  ' expect: 3.7383
Say FormatNumber(1234567.891)  ' expect: 1,234,567.89
Say FormatNumber(1234567.891, 0)  ' expect: 1,234,568
Say FormatNumber(999.995, 2)  ' expect: 1,000.00
Say FormatNumber(1.005, 2)  ' expect: 1.01
Say FormatNumber(2.5, 0)  ' expect: 3
Say FormatNumber(-2.5, 0)  ' expect: -3
Say FormatNumber(0.5, 0)  ' expect: 1
Say FormatNumber(0.4, 0)  ' expect: 0
Say FormatNumber(5, -1)  ' expect: 5.00
Say FormatNumber("1234.5", 1)  ' expect: 1,234.5
Say FormatNumber(0)  ' expect: 0.00
Say FormatNumber(Empty)  ' expect: 0.00
Say FormatNumber(-0.001)  ' expect: 0.00
Say FormatNumber(123, 20)  ' expect: 123.00000000000000000000
Say FormatNumber(1E20, 0)  ' expect: 100,000,000,000,000,000,000
Say FormatNumber(CCur("922337203685477.5807"), 4)  ' expect: 922,337,203,685,477.5807

' Leading digit.
Say FormatNumber(0.5)  ' expect: 0.50
Say FormatNumber(0.5, 2, vbFalse)  ' expect: .50
Say FormatNumber(-0.5, 2, vbFalse)  ' expect: -.50
Say FormatNumber(0.5, 2, vbTrue)  ' expect: 0.50
Say FormatNumber(0.5, 2, vbUseDefault)  ' expect: 0.50
Say FormatNumber(1.5, 2, vbFalse)  ' expect: 1.50

' Negative numbers and groups.
Say FormatNumber(-1234.5)  ' expect: -1,234.50
Say FormatNumber(-1234.5, 2, , vbTrue)  ' expect: (1,234.50)
Say FormatNumber(1234.5, 2, , vbTrue)  ' expect: 1,234.50
Say FormatNumber(-1234.5, , , , vbFalse)  ' expect: -1234.50
Say FormatNumber(123456, 0, vbUseDefault, vbUseDefault, vbTrue)  ' expect: 123,456
Say FormatNumber(100, 0)  ' expect: 100
Say FormatNumber(1, 2, True, False, True)  ' expect: 1.00

Say FormatNumber("x")  ' expect error 13
Say FormatNumber(Null)  ' expect error 94
Say FormatNumber(1, -2)  ' expect error 5
Say FormatNumber(1, 100)  ' expect error 5
Say FormatNumber(1, 2, 3)  ' expect error 5

Say FormatCurrency(1000)  ' expect: $1,000.00
Say FormatCurrency(-1000)  ' expect: ($1,000.00)
Say FormatCurrency(-1000, 2, , vbFalse)  ' expect: -$1,000.00
Say FormatCurrency(0.5, 2, vbFalse)  ' expect: $.50
Say FormatCurrency(1234.5678, 3, , , vbFalse)  ' expect: $1234.568
Say FormatCurrency(-0.001)  ' expect: $0.00

Say FormatPercent(2 / 32)  ' expect: 6.25%
Say FormatPercent(0.1234567, 1)  ' expect: 12.3%
Say FormatPercent(-0.5)  ' expect: -50.00%
Say FormatPercent(-0.5, 0, , vbTrue)  ' expect: (50%)
Say FormatPercent(12.5)  ' expect: 1,250.00%
Say FormatPercent(0.005, 2, vbFalse)  ' expect: .50%
