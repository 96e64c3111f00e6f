' Texts that hold dates: month first, unless no date can be made of it so.
Say CDate("2/25/2004")  ' expect: 2/25/2004
Say CDate("25/2/2004")  ' expect: 2/25/2004
Say CDate("2-3-04")  ' expect: 2/3/2004
Say CDate("2004-02-25 15:05")  ' expect: 2/25/2004 3:05:00 PM
Say CDate("2004/2/25")  ' expect: 2/25/2004
Say CDate("February 25, 2004")  ' expect: 2/25/2004
Say CDate("feb 25 2004")  ' expect: 2/25/2004
Say CDate("25-Feb-04")  ' expect: 2/25/2004
Say CDate("25 February 2004")  ' expect: 2/25/2004
Say CDate("Feb 2004")  ' expect: 2/1/2004
Say CDate("2/2004")  ' expect: 2/1/2004
Say CDate("2/25") = DateSerial(Year(Now), 2, 25)  ' expect: True
Say CDate("Feb 25") = DateSerial(Year(Now), 2, 25)  ' expect: True
Say CDate("1/1/29")  ' expect: 1/1/2029
Say CDate("1/1/30")  ' expect: 1/1/1930
Say CDate("1/1/0100")  ' expect: 1/1/100
Say CDate("2/29/2004")  ' expect: 2/29/2004
Say CDate("2/29/1900")  ' expect error 13
Say CDate("13/13/2004")  ' expect error 13
Say CDate("1/1/10000")  ' expect error 13
Say CDate("1//2/2004")  ' expect error 13
Say CDate("/1/2/2004")  ' expect error 13
Say CDate("1/2/3/4")  ' expect error 13
Say CDate("10 20")  ' expect error 13
Say CDate("Feb Mar 2004")  ' expect error 13
Say CDate("3 PM")  ' expect: 3:00:00 PM
Say CDate("3pm")  ' expect: 3:00:00 PM
Say CDate("12 AM")  ' expect: 12:00:00 AM
Say CDate("12:30 PM")  ' expect: 12:30:00 PM
Say CDate("0:05")  ' expect: 12:05:00 AM
Say CDate("3:05:10 PM 2/25/2004")  ' expect: 2/25/2004 3:05:10 PM
Say CDate("24:00")  ' expect error 13
Say CDate("1:60")  ' expect error 13
Say CDate("1:2:3:4")  ' expect error 13
Say CDate("13:00 AM")  ' expect error 13
Say CDate("1:00 2:00")  ' expect error 13
Say CDate("2004-02-25T15:05")  ' expect error 13

' Days before 30 December 1899 are negative, their time of day still runs forward.
Say CDate(0.5)  ' expect: 12:00:00 PM
Say CDate(1.25)  ' expect: 12/31/1899 6:00:00 AM
Say CDate(-1.25)  ' expect: 12/29/1899 6:00:00 AM
Say CDbl(CDate("12/29/1899 6:00"))  ' expect: -1.25
Say CDate(1.9999999)  ' expect: 1/1/1900
Say CDate(37987.999994)  ' expect: 1/1/2004 11:59:59 PM

' Parts.
Say Year(#2/25/2004#)  ' expect: 2004
Say Month(#2/25/2004#)  ' expect: 2
Say Day("October 19, 1962")  ' expect: 19
Say Hour(#3:05:10 PM#)  ' expect: 15
Say Minute(#3:05:10 PM#)  ' expect: 5
Say Second(#3:05:10 PM#)  ' expect: 10
Say TypeName(Year(#2/25/2004#))  ' expect: Integer
Say IsNull(Year(Null))  ' expect: True
Say IsNull(Second(Null))  ' expect: True
Say Year(0)  ' expect: 1899
Say Month("x")  ' expect error 13
Say Weekday("October 19, 1962")  ' expect: 6
Say Weekday(#2/25/2004#)  ' expect: 4
Say Weekday(#2/25/2004#, vbMonday)  ' expect: 3
Say Weekday(#2/25/2004#, vbWednesday)  ' expect: 1
Say Weekday(#2/25/2004#, 0)  ' expect: 4
Say Weekday(#1/1/100#)  ' expect: 6
Say Weekday(#2/25/2004#, 8)  ' expect error 5
Say IsNull(Weekday(Null))  ' expect: True

' Names.
Say MonthName(10, True)  ' expect: Oct
Say MonthName(10)  ' expect: October
Say MonthName(0)  ' expect error 5
Say MonthName(13)  ' expect error 5
Say WeekdayName(6, True)  ' expect: Fri
Say WeekdayName(1)  ' expect: Sunday
Say WeekdayName(1, False, vbMonday)  ' expect: Monday
Say WeekdayName(7, False, vbMonday)  ' expect: Sunday
Say WeekdayName(8)  ' expect error 5

' DateAdd.
Say DateAdd("m", 1, "31-Jan-95")  ' expect: 2/28/1995
Say DateAdd("m", 1, #1/31/1996#)  ' expect: 2/29/1996
Say DateAdd("m", -1, #3/31/2004#)  ' expect: 2/29/2004
Say DateAdd("yyyy", 1, #2/29/2004#)  ' expect: 2/28/2005
Say DateAdd("q", 1, #11/30/2003#)  ' expect: 2/29/2004
Say DateAdd("m", -13, #1/15/2004#)  ' expect: 12/15/2002
Say DateAdd("d", 1, #2/28/2004#)  ' expect: 2/29/2004
Say DateAdd("y", 366, #1/1/2004#)  ' expect: 1/1/2005
Say DateAdd("w", 7, #1/1/2004#)  ' expect: 1/8/2004
Say DateAdd("ww", -1, #1/1/2004#)  ' expect: 12/25/2003
Say DateAdd("h", 25, #1/1/2004#)  ' expect: 1/2/2004 1:00:00 AM
Say DateAdd("n", -1, #1/1/2004#)  ' expect: 12/31/2003 11:59:00 PM
Say DateAdd("s", 86400, #1/1/2004 10:00:00 AM#)  ' expect: 1/2/2004 10:00:00 AM
Say DateAdd("h", -6, #12/30/1899#)  ' expect: 12/29/1899 6:00:00 PM
Say DateAdd("d", 1.5, #1/1/2004#)  ' expect: 1/3/2004
Say DateAdd("d", "2", #1/1/2004#)  ' expect: 1/3/2004
Say DateAdd("D", 1, #1/1/2004#)  ' expect: 1/2/2004
Say DateAdd("m", 1, #1/31/2004 3:05:10 PM#)  ' expect: 2/29/2004 3:05:10 PM
Say TypeName(DateAdd("d", 1, "1/1/2004"))  ' expect: Date
Say IsNull(DateAdd("d", 1, Null))  ' expect: True
Say DateAdd("x", 1, #1/1/2004#)  ' expect error 5
Say DateAdd("d", 1, #12/31/9999#)  ' expect error 5
Say DateAdd("yyyy", -1, #1/1/100#)  ' expect error 5
Say DateAdd("s", 1E300, #1/1/2004#)  ' expect error 5

' DateDiff counts the boundaries between the two.
Say DateDiff("yyyy", #12/31/2003#, #1/1/2004#)  ' expect: 1
Say DateDiff("q", #3/31/2004#, #4/1/2004#)  ' expect: 1
Say DateDiff("m", #1/31/2004#, #2/1/2004#)  ' expect: 1
Say DateDiff("d", #2/28/2004#, #3/1/2004#)  ' expect: 2
Say DateDiff("y", #3/1/2004#, #2/28/2004#)  ' expect: -2
Say DateDiff("h", #1:59:59 PM#, #2:00:00 PM#)  ' expect: 1
Say DateDiff("n", #1:59:59 PM#, #2:00:00 PM#)  ' expect: 1
Say DateDiff("s", #1/1/2004#, #1/2/2004#)  ' expect: 86400
Say DateDiff("n", #12/29/1899 11:00:00 PM#, #12/30/1899 1:00:00 AM#)  ' expect: 120
Say DateDiff("w", #1/5/2004#, #1/18/2004#)  ' expect: 1
Say DateDiff("w", #1/5/2004#, #1/19/2004#)  ' expect: 2
Say DateDiff("ww", #1/5/2004#, #1/18/2004#)  ' expect: 2
Say DateDiff("ww", #1/5/2004#, #1/18/2004#, vbMonday)  ' expect: 1
Say DateDiff("ww", #1/3/2004#, #1/4/2004#)  ' expect: 1
Say DateDiff("ww", #1/4/2004#, #1/3/2004#)  ' expect: -1
Say TypeName(DateDiff("d", #1/1/2004#, #1/2/2004#))  ' expect: Long
Say DateDiff("s", #1/1/1900#, #1/1/2000#)  ' expect error 6
Say IsNull(DateDiff("d", Null, #1/1/2004#))  ' expect: True
Say DateDiff("zz", #1/1/2004#, #1/2/2004#)  ' expect error 5
Say DateDiff("d", "soon", #1/2/2004#)  ' expect error 13

' DatePart.
Say DatePart("q", #11/15/2004#)  ' expect: 4
Say DatePart("yyyy", #11/15/2004#)  ' expect: 2004
Say DatePart("m", #11/15/2004#)  ' expect: 11
Say DatePart("y", #12/31/2004#)  ' expect: 366
Say DatePart("d", #11/15/2004#)  ' expect: 15
Say DatePart("w", #11/15/2004#)  ' expect: 2
Say DatePart("w", #11/15/2004#, vbMonday)  ' expect: 1
Say DatePart("h", #3:05:10 PM#)  ' expect: 15
Say DatePart("n", #3:05:10 PM#)  ' expect: 5
Say DatePart("s", #3:05:10 PM#)  ' expect: 10
Say DatePart("ww", #1/1/2004#)  ' expect: 1
Say DatePart("ww", #1/3/2004#)  ' expect: 1
Say DatePart("ww", #1/4/2004#)  ' expect: 2
Say DatePart("ww", #12/31/2004#)  ' expect: 53
Say DatePart("ww", #1/1/2005#, vbMonday, vbFirstFourDays)  ' expect: 53
Say DatePart("ww", #1/3/2005#, vbMonday, vbFirstFourDays)  ' expect: 1
Say DatePart("ww", #12/29/2003#, vbMonday, vbFirstFourDays)  ' expect: 1
Say DatePart("ww", #1/1/2004#, vbSunday, vbFirstFullWeek)  ' expect: 52
Say DatePart("ww", #1/4/2004#, vbSunday, vbFirstFullWeek)  ' expect: 1
Say TypeName(DatePart("d", #1/1/2004#))  ' expect: Integer
Say DatePart("ww", #1/1/2004#, 8)  ' expect error 5
Say DatePart("ww", #1/1/2004#, 1, 4)  ' expect error 5

' DateSerial and TimeSerial take parts out of range.
Say DateSerial(1990, 8, 1)  ' expect: 8/1/1990
Say DateSerial(1990 - 10, 8 - 2, 1 - 1)  ' expect: 5/31/1980
Say DateSerial(2004, 14, 1)  ' expect: 2/1/2005
Say DateSerial(2004, 2, 30)  ' expect: 3/1/2004
Say DateSerial(2004, 3, 0)  ' expect: 2/29/2004
Say DateSerial(2004, 0, 1)  ' expect: 12/1/2003
Say DateSerial(2004, -11, 1)  ' expect: 1/1/2003
Say DateSerial(99, 1, 1)  ' expect: 1/1/1999
Say DateSerial(5, 1, 1)  ' expect: 1/1/1905
Say DateSerial(100, 1, 1)  ' expect: 1/1/100
Say DateSerial(9999, 12, 31)  ' expect: 12/31/9999
Say DateSerial(9999, 12, 32)  ' expect error 5
Say DateSerial(-1, 1, 1)  ' expect error 5
Say DateSerial(40000, 1, 1)  ' expect error 6
Say DateSerial("x", 1, 1)  ' expect error 13
Say TimeSerial(12 - 6, -15, 0)  ' expect: 5:45:00 AM
Say TimeSerial(12 - 6, -15 , 0) = #5:45:00 AM#  ' expect: True
Say TimeSerial(10, 75, 0)  ' expect: 11:15:00 AM
Say TimeSerial(25, 0, 0)  ' expect: 12/31/1899 1:00:00 AM
Say TimeSerial(0, 0, -1)  ' expect: 12/29/1899 11:59:59 PM
Say TypeName(TimeSerial(1, 2, 3))  ' expect: Date

' DateValue and TimeValue.
Say DateValue("September 11, 1963")  ' expect: 9/11/1963
Say DateValue("2/25/2004 3:05:10 PM")  ' expect: 2/25/2004
Say DateValue(#2/25/2004 3:05:10 PM#)  ' expect: 2/25/2004
Say DateValue("89:97")  ' expect error 13
Say DateValue("38042")  ' expect error 13
Say IsNull(DateValue(Null))  ' expect: True
Say TimeValue("4:35:17 PM")  ' expect: 4:35:17 PM
Say TimeValue("16:35:17")  ' expect: 4:35:17 PM
Say TimeValue(#2/25/2004 3:05:10 PM#)  ' expect: 3:05:10 PM

' The clock.
Say TypeName(Now)  ' expect: Date
Say TypeName(Date)  ' expect: Date
Say TypeName(Time)  ' expect: Date
Say TypeName(Timer)  ' expect: Single
Say Date = Int(Date)  ' expect: True
Say Time < 1  ' expect: True
Say Timer >= 0 And Timer < 86400  ' expect: True
Say Abs(DateDiff("s", Date + Time, Now)) <= 1  ' expect: True
Say Year(Now) > 2020  ' expect: True

' FormatDateTime.
Say FormatDateTime(#2/25/2004 3:05:10 PM#)  ' expect: 2/25/2004 3:05:10 PM
Say FormatDateTime(#2/25/2004 3:05:10 PM#, vbGeneralDate)  ' expect: 2/25/2004 3:05:10 PM
Say FormatDateTime(#2/5/2004 3:05:10 PM#, vbLongDate)  ' expect: Thursday, February 5, 2004
Say FormatDateTime("February 25, 2004", 2)  ' expect: 2/25/2004
Say FormatDateTime(#2/25/2004 3:05:10 PM#, vbLongTime)  ' expect: 3:05:10 PM
Say FormatDateTime(#2/25/2004 3:05:10 PM#, vbShortTime)  ' expect: 15:05
Say FormatDateTime(#2/25/2004 9:05:10 AM#, 4)  ' expect: 09:05
Say FormatDateTime(#2/25/2004#, 5)  ' expect error 5
Say FormatDateTime("x", 1)  ' expect error 13
