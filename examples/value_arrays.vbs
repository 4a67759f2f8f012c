' The typed value arrays: add values, read them back by index, list them, and trap the errors
' they raise. Run with: ravelin examples/value_arrays.vbs
Option Explicit
SetLocale "en-US"

Sub Show(label, value)
  WScript.Echo "  " & label & ": " & value
End Sub

' Reads an index that does not exist and shows the error the array raises.
Sub ShowBadIndex(arr, index)
  Dim value
  On Error Resume Next
  value = arr.item(index)
  If Err.Number <> 0 Then
    WScript.Echo "  item(" & index & ") raises " & Err.Number & " from " & Err.Source & ": " & Err.Description
  Else
    WScript.Echo "  item(" & index & ") = " & value
  End If
  On Error GoTo 0
End Sub

' clsArraySingle has no list or removal members; the other arrays have both.
Sub Tour(className, values, hasList)
  Dim arr, value
  Set arr = CreateObject("Ravelin." & className)
  WScript.Echo TypeName(arr)
  For Each value In values
    Show "add(" & value & ") returns", arr.add(value)
  Next
  Show "getCount", arr.getCount()
  Show "item(1)", arr.item(1)
  ShowBadIndex arr, arr.getCount()
  ShowBadIndex arr, -1
  If hasList Then
    Show "getItemsAsList", arr.getItemsAsList()
    Show "removeItem(0)", arr.removeItem(0)
    Show "getItemsAsList", arr.getItemsAsList()
  End If
End Sub

Tour "clsArrayBoolean", Array(True, False, True), True
Tour "clsArrayInteger", Array(1, -32768, 32767), True
Tour "clsArrayLong", Array(10, 20, 30, -2147483648), True
Tour "clsArraySingle", Array(1.5, 0.1, 3.4E+38), False
Tour "clsArrayDouble", Array(0.1 + 0.2, 1E-300, 1234567.891), True
Tour "clsArrayString", Array("alpha", "", "caf" & ChrW(233)), True

' A value that does not fit the array's type is an overflow, trapped like any other error.
Dim small
Set small = CreateObject("Ravelin.clsArrayInteger")
On Error Resume Next
small.add 40000
WScript.Echo "clsArrayInteger.add 40000 raises " & Err.Number & ": " & Err.Description
Err.Clear
small.add "not a number"
WScript.Echo "clsArrayInteger.add ""not a number"" raises " & Err.Number & ": " & Err.Description
On Error GoTo 0
