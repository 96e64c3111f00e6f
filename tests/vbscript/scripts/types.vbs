Say VarType(Empty)  ' expect: 0
Say VarType(Null)  ' expect: 1
Say VarType(300)  ' expect: 2
Say VarType(100000)  ' expect: 3
Say VarType(CSng(1))  ' expect: 4
Say VarType(1.5)  ' expect: 5
Say VarType(CCur(1))  ' expect: 6
Say VarType(#10/19/1962#)  ' expect: 7
Say VarType("VBScript")  ' expect: 8
Say VarType(Nothing)  ' expect: 9
Say VarType(CreateObject("Scripting.Dictionary"))  ' expect: 9
Say VarType(True)  ' expect: 11
Say VarType(CByte(1))  ' expect: 17
Say VarType(Array(1, 2))  ' expect: 8204
Say VarType(&H7FFF)  ' expect: 2
Say VarType(&HFFFF)  ' expect: 2
Say VarType(&H10000)  ' expect: 3
Say VarType(VarType(1))  ' expect: 2

Say TypeName(Empty)  ' expect: Empty
Say TypeName(Null)  ' expect: Null
Say TypeName(CCur(1))  ' expect: Currency
Say TypeName(#1/1/2004#)  ' expect: Date
Say TypeName(True)  ' expect: Boolean
Say TypeName(Nothing)  ' expect: Nothing
Say TypeName(Array())  ' expect: Variant()
Say TypeName(CreateObject("Scripting.Dictionary"))  ' expect: Dictionary

Say IsNumeric(53)  ' expect: True
Say IsNumeric("459.95")  ' expect: True
Say IsNumeric("45 Help")  ' expect: False
Say IsNumeric(Empty)  ' expect: True
Say IsNumeric(Null)  ' expect: False
Say IsNumeric("")  ' expect: False
Say IsNumeric(" 5 ")  ' expect: True
Say IsNumeric("&HFF")  ' expect: True
Say IsNumeric("$1,000.50")  ' expect: True
Say IsNumeric("1E5")  ' expect: True
Say IsNumeric("1/2/2004")  ' expect: False
Say IsNumeric(#1/2/2004#)  ' expect: False
Say IsNumeric(True)  ' expect: True
Say IsNumeric("True")  ' expect: False
Say IsNumeric(Array(1))  ' expect: False
Say IsNumeric(Nothing)  ' expect: False
Say IsNumeric(CCur(1))  ' expect: True

Say IsDate("October 19, 1962")  ' expect: True
Say IsDate(#10/19/62#)  ' expect: True
Say IsDate("Hello")  ' expect: False
Say IsDate("2/30/2004")  ' expect: False
Say IsDate("13:05")  ' expect: True
Say IsDate("")  ' expect: False
Say IsDate(38042)  ' expect: False
Say IsDate("5")  ' expect: False
Say IsDate(Null)  ' expect: False
Say IsDate(Empty)  ' expect: False

Say IsEmpty(never)  ' expect: True
Say IsEmpty("")  ' expect: False
Say IsEmpty(0)  ' expect: False
Say IsEmpty(Null)  ' expect: False
Say IsNull(Null)  ' expect: True
Say IsNull(Empty)  ' expect: False
Say IsNull("")  ' expect: False
Say IsObject(Nothing)  ' expect: True
Say IsObject(CreateObject("Scripting.Dictionary"))  ' expect: True
Say IsObject("x")  ' expect: False
Say IsArray(Array())  ' expect: True
Say IsArray("x")  ' expect: False
Say TypeName()  ' expect error 450
