' ---- ByRef and ByVal
Sub Increment(n)
  n = n + 1
End Sub
Sub Keep(ByVal n)
  n = n + 1
End Sub
x = 1
Increment x
Say x  ' expect: 2
Increment (x)
Say x  ' expect: 2
Call Increment(x)
Say x  ' expect: 3
Call Increment((x))
Say x  ' expect: 3
Increment x + 0
Say x  ' expect: 3
Keep x
Say x  ' expect: 3
Dim a(1)
a(0) = 5
Increment a(0)
Say a(0)  ' expect: 6
Sub Twice(ByRef n)
  Increment n
  Increment n
End Sub
Twice x
Say x  ' expect: 5
Sub Swap(a, b)
  Dim c
  c = a : a = b : b = c
End Sub
y = 1
Swap x, y
Say x & y  ' expect: 15
Sub Both(one, other)
  one = one & "1"
  Say other  ' expect: s1
End Sub
s = "s"
Both s, s
Sub Fill(list())
  ReDim list(2)
  list(2) = "filled"
End Sub
Dim dynamic()
Fill dynamic
Say dynamic(2)  ' expect: filled
Sub Change(list)
  list(0) = "changed"
End Sub
b = Array("old")
Change b
Say b(0)  ' expect: changed
Change (b)
b(0) = "own"
Sub ChangeCopy(ByVal list)
  list(0) = "copy"
End Sub
ChangeCopy b
Say b(0)  ' expect: own

' ---- Functions
Function Factorial(n)
  If n < 2 Then
    Factorial = 1
    Exit Function
  End If
  Factorial = n * Factorial(n - 1)
End Function
Say Factorial(10)  ' expect: 3628800
Say TypeName(Factorial(20))  ' expect: Double
Function Fibonacci(n)
  If n < 2 Then Fibonacci = n Else Fibonacci = Fibonacci(n - 1) + Fibonacci(n - 2)
End Function
Say Fibonacci(15)  ' expect: 610
Function Nothing_Said()
End Function
Say TypeName(Nothing_Said())  ' expect: Empty
Say TypeName(Nothing_Said)  ' expect: Empty
Function Collected(last)
  Dim i
  For i = 1 To last
    Collected = Collected & i
  Next
End Function
Say Collected(5)  ' expect: 12345
Function MakeDictionary
  Set MakeDictionary = CreateObject("Scripting.Dictionary")
  MakeDictionary.Add "k", "v"
End Function
Say MakeDictionary.Item("k")  ' expect: v
Say MakeDictionary()("k")  ' expect: v
Set d = MakeDictionary
Say d.Count  ' expect: 1
Function List()
  List = Array(1, 2, 3)
End Function
Say List()(1)  ' expect: 2
Say UBound(List)  ' expect: 2
Function Early(x)
  Early = "early"
  If x Then Exit Function
  Early = "late"
End Function
Say Early(True) & " " & Early(False)  ' expect: early late
Sub Leave(x)
  If x Then Exit Sub
  Say "stayed"  ' expect: stayed
End Sub
Leave True
Leave False

' ---- Called before they are defined; the last definition counts
Say Later(2)  ' expect: 4
Function Later(n)
  Later = n * 2
End Function
Say Defined()  ' expect: second
Function Defined
  Defined = "first"
End Function
Function Defined
  Defined = "second"
End Function
If False Then
  Function Within
    Within = "within"
  End Function
End If
Say Within  ' expect: within

' ---- Mutual recursion
Function Even(n)
  If n = 0 Then Even = True Else Even = Odd(n - 1)
End Function
Function Odd(n)
  If n = 0 Then Odd = False Else Odd = Even(n - 1)
End Function
Say Even(501) & Odd(501)  ' expect: FalseTrue

' ---- Wrong calls
Increment  ' expect error 450
Increment 1, 2  ' expect error 450
x = Factorial()  ' expect error 450
Nobody 1  ' expect error 13: Type mismatch: 'Nobody'
x = Nobody(1)  ' expect error 13: Type mismatch: 'Nobody'
x = 5
x 1  ' expect error 13
Factorial = 3  ' expect error 501

' ---- References
Function Add(a, b)
  Add = a + b
End Function
Set reference = GetRef("add")
Say reference(2, 3)  ' expect: 5
Sub Apply(f, x)
  Say f(x, 10)  ' expect: 17
End Sub
Apply reference, 7
Set raise = GetRef("Increment")
n = 4
raise n
Say n  ' expect: 5
Set missing = GetRef("Nobody")  ' expect error 5

' ---- Omitted arguments
Function IsMissing(a, b)
  IsMissing = VarType(a) & " " & VarType(b)
End Function
Say IsMissing(, 1)  ' expect: 10 2

' ---- Text built by a recursive procedure stays with its caller
Sub Build(ByRef text, depth)
  If depth = 0 Then Exit Sub
  text = text & depth
  Build text, depth - 1
  text = text & depth
End Sub
t = ""
Build t, 4
Say t  ' expect: 43211234

' ---- What stands on the left keeps the value it had
v = 1
Function Sets(n)
  v = n
  Sets = "s"
End Function
Say v & "x" & Sets(2)  ' expect: 1xs
Say v & Sets(3) & v  ' expect: 2s3
Say v + Len(Sets(10)) * v  ' expect: 13
Say Join(Array(v, Sets(4), v))  ' expect: 10 s 4

' ---- Long chains
Execute "t = ""<""" & Replace(String(300, "x"), "x", " & ""ab""") & " & "">"""
Say Len(t) & Left(t, 3) & Right(t, 3)  ' expect: 602<abab>
