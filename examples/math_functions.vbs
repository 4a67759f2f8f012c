' MathFunctions: rounding that binary noise cannot fool, a lenient reader of typed numbers,
' cumulative discounts, currency conversion and the limits of numeric input fields.
' Run with: ravelin examples/math_functions.vbs
Option Explicit

Dim m
Set m = CreateObject("Ravelin.MathFunctions")

' 0.285 * 100 is 28.499999999999996 in binary; MyRound still gives 0.29, where Round gives 0.28.
WScript.Echo "MyRound(0.285, 2) = " & m.MyRound(0.285, 2) & ", Round(0.285, 2) = " & Round(0.285, 2)
WScript.Echo "MyRound(1.005, 2) = " & m.MyRound(1.005, 2) & ", MyRound(-2.675, 2) = " & m.MyRound(-2.675, 2)
' Halves go away from zero in both modes; negative places round to tens, hundreds...
WScript.Echo "MyRound(2.5, 0) = " & m.MyRound(2.5, 0) & ", MyRound(-2.5, 0, ArithmeticalSimetric) = " & m.MyRound(-2.5, 0, ArithmeticalSimetric)
WScript.Echo "MyRound(1234.5, -2) = " & m.MyRound(1234.5, -2) & ", MyRound(1.5, 0, 7) = " & m.MyRound(1.5, 0, 7)

' Truncation on the decimal text.
WScript.Echo "MyInt(2.9999999999999996) = " & m.MyInt(2.9999999999999996) & ", MyInt(-2.7) = " & m.MyInt(-2.7) & ", MyInt(Null) = " & m.MyInt(Null)
WScript.Echo "MyABS(-3.5) = " & m.MyABS(-3.5)

' Typed numbers: stray characters are dropped; "." as separator reads invariantly.
WScript.Echo "MyVal(""$ 1,234.50"") = " & m.MyVal("$ 1,234.50") & ", MyVal(""12,5"", ""."") = " & m.MyVal("12,5", ".")
WScript.Echo "MyVal(""1.5E+3"") = " & m.MyVal("1.5E+3") & ", MyVal(""abc"") = " & m.MyVal("abc")

' 10% then 10% off is 19% off in all.
WScript.Echo "GetCumulativeDiscount(10, 10, 0) = " & m.GetCumulativeDiscount(10, 10, 0) & ", (50, 50, 50) = " & m.GetCumulativeDiscount(50, 50, 50)

' Currency: 100 at rate 2 is 50; at a target rate of 3 it is 150; into the euro the target rate
' is not applied.
WScript.Echo "ConvCurrency = " & m.ConvCurrency(100, 2, 1, False, 3, 1, 2) & " / " & m.ConvCurrency(100, 2, 1, True, 3, 1, 2) & " / " & m.ConvCurrency(100, 0, 1, False, 3, 1, 2)

' Input fields.
WScript.Echo "vtInteger: " & m.GetTypeMaxValue(vtInteger) & " " & m.GetTypeMaxValueFormat(vtInteger)
WScript.Echo "vtLong: " & m.GetTypeMaxValue(vtLong) & " " & m.GetTypeMaxValueFormat(vtLong)
WScript.Echo "vtDouble: " & m.GetTypeMaxValue(vtDouble) & " " & m.GetTypeMaxValueFormat(vtDouble)
WScript.Echo "17: " & m.GetTypeMaxValue(17) & " " & m.GetTypeMaxValueFormat(17)
WScript.Echo "GetTDBMaxValueFromFormat: " & m.GetTDBMaxValueFromFormat("#,##0.00") & " " & m.GetTDBMaxValueFromFormat("$ #,##0;(#,##0)") & " " & m.GetTDBMaxValueFromFormat("##0")
WScript.Echo "ValidNumericAscii: " & m.ValidNumericAscii(46) & " " & m.ValidNumericAscii(44) & " " & m.ValidNumericAscii(55)
WScript.Echo "Week: " & m.GetTDBWeekTitles()
