' DateFunctions: month ends, day-of-year counts and week numbers (weeks start on Monday; week 1
' is the first week with four days in the new year). Run with: ravelin examples/date_functions.vbs
Option Explicit

Dim d
Set d = CreateObject("Ravelin.DateFunctions")

Function Iso(value)
  Iso = Format(value, "yyyy-mm-dd")
End Function

' Month ends. February has 29 days in every year divisible by 4, 1900 and 2100 included.
WScript.Echo "IsLastDayOfMonth 2011-02-28: " & d.IsLastDayOfMonth(DateSerial(2011, 2, 28))
WScript.Echo "IsLastDayOfMonth 2012-02-28: " & d.IsLastDayOfMonth(DateSerial(2012, 2, 28))
WScript.Echo "GetLastDayOfMonth(2, 1900): " & d.GetLastDayOfMonth(2, 1900)
WScript.Echo "GetLastDayOfMonth(2, 2011): " & d.GetLastDayOfMonth(2, 2011)
WScript.Echo "GetLastDayOfMonth(13, 2010): " & d.GetLastDayOfMonth(13, 2010)
WScript.Echo "GetNextLastDayOfMonth(12, 2010): " & d.GetNextLastDayOfMonth(12, 2010)
WScript.Echo "GetNextLastDayOfMonth(1, 2012): " & d.GetNextLastDayOfMonth(1, 2012)

' Day of the year; a time after noon counts one day more.
WScript.Echo "DayOfYear 2012-12-31: " & d.DayOfYear(DateSerial(2012, 12, 31))
WScript.Echo "DayOfYear 2010-01-01 18:00: " & d.DayOfYear(DateSerial(2010, 1, 1) + TimeSerial(18, 0, 0))

' Week numbers around the turn of the year.
Dim day
For Each day In Array(DateSerial(2010, 1, 1), DateSerial(2010, 1, 4), DateSerial(2015, 12, 31), _
                      DateSerial(2019, 12, 30), DateSerial(2018, 12, 31))
  WScript.Echo "GetWeekNumber " & Iso(day) & ": " & d.GetWeekNumber(day)
Next

' The Monday of a week; week 0 gives the zero date.
WScript.Echo "GetDateByWeekNumber(1, 2010): " & Iso(d.GetDateByWeekNumber(1, 2010))
WScript.Echo "GetDateByWeekNumber(1, 2009): " & Iso(d.GetDateByWeekNumber(1, 2009))
WScript.Echo "GetDateByWeekNumber(53, 2010): " & Iso(d.GetDateByWeekNumber(53, 2010))
WScript.Echo "GetDateByWeekNumber(0, 2010) = 0: " & (CDbl(d.GetDateByWeekNumber(0, 2010)) = 0)

' Week * 7 beyond the Integer range is an overflow.
On Error Resume Next
d.GetDateByWeekNumber 5000, 2010
WScript.Echo "GetDateByWeekNumber(5000, 2010): error " & Err.Number & " " & Err.Description
On Error GoTo 0
