' Conversions and formats of the automation runtime, as the library computes them: number text,
' rounding, user-defined formats, and dates under two locales.
' Run with: ravelin examples/conversions.vbs
Option Explicit

Dim d
d = DateSerial(2024, 2, 29) + TimeSerial(14, 5, 9)

Sub Section(localeName)
  SetLocale localeName
  WScript.Echo "== " & localeName
  WScript.Echo "CStr(1234.5)        " & CStr(1234.5)
  WScript.Echo "CStr(1 / 3)         " & CStr(1 / 3)
  WScript.Echo "CStr(CCur(2.5))     " & CStr(CCur(2.5))
  WScript.Echo "CStr(True)          " & CStr(True)
  WScript.Echo "CStr(date)          " & CStr(d)
  WScript.Echo "CDbl(""1,5"")         " & CDbl("1,5")
  WScript.Echo "Format(1234.5, ""#,##0.00"")  " & Format(1234.5, "#,##0.00")
  WScript.Echo "Format(0.256, ""0.0%"")       " & Format(0.256, "0.0%")
  WScript.Echo "Format(-3, ""0;(0);zero"")    " & Format(-3, "0;(0);zero")
  WScript.Echo "Format(date, ""Long Date"")   " & Format(d, "Long Date")
  WScript.Echo "Format(date, ""dd/mm/yyyy hh:nn"")  " & Format(d, "dd/mm/yyyy hh:nn")
  WScript.Echo "FormatDateTime(date, vbShortDate)  " & FormatDateTime(d, vbShortDate)
  WScript.Echo "MonthName(2)        " & MonthName(2)
  WScript.Echo "WeekdayName(Weekday(date))  " & WeekdayName(Weekday(d))
End Sub

Section "en-US"
Section "pt-BR"

' Rounding to even, and the errors of conversions that do not fit.
SetLocale "en-US"
WScript.Echo "== rounding and limits"
WScript.Echo "CInt(2.5) " & CInt(2.5) & ", CInt(3.5) " & CInt(3.5) & ", CLng(-2.5) " & CLng(-2.5)
WScript.Echo "Round(2.675, 2) " & Round(2.675, 2)
WScript.Echo "CLng(""&HFF"") " & CLng("&HFF") & ", CDbl(""1e3"") " & CDbl("1e3")
WScript.Echo "TypeName(CCur(1)) " & TypeName(CCur(1)) & ", VarType(CDate(0)) " & VarType(CDate(0))
On Error Resume Next
Dim x
x = CInt(40000)
WScript.Echo "CInt(40000) raises " & Err.Number & ": " & Err.Description
Err.Clear
x = CDate("not a date")
WScript.Echo "CDate(""not a date"") raises " & Err.Number & ": " & Err.Description
On Error GoTo 0
