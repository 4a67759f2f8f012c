' The value arrays by name: growth, item read and write, lists, removal, clear and the errors
' each one raises, trapped with On Error Resume Next.
Dim arr, i, ok, keepValues, resetCount
SetLocale "en-US"

Sub Report(label)
  If Err.Number = 0 Then
    WScript.Echo label & ": no error"
  Else
    WScript.Echo label & ": " & Err.Number & " [" & Err.Source & "] " & Err.Description
  End If
  Err.Clear
End Sub

On Error Resume Next

Set arr = CreateObject("Ravelin.clsArrayLong")
For i = 1 To 100
  arr.add i * i
Next
WScript.Echo arr.getCount(), arr.Count, arr.item(0), arr.item(99)
arr.item(99) = -1
WScript.Echo arr.item(99)
WScript.Echo arr.removeLastItem(), arr.getCount(), arr.removeItem(1000), arr.getCount()
arr.clear
WScript.Echo arr.getCount(), "[" & arr.getItemsAsList() & "]"
arr.item(0) = 5
Report "clsArrayLong item(0) = 5 when empty"
arr.add "12"
arr.add 2.5
arr.add 3.5
WScript.Echo arr.getItemsAsList()
arr.add 2147483648
Report "clsArrayLong add 2147483648"
arr.add Null
Report "clsArrayLong add Null"
arr.add
Report "clsArrayLong add with no value"

Set arr = CreateObject("Ravelin.clsArrayInteger")
arr.setArraySizeWithEmptyValues 3
WScript.Echo arr.getCount(), arr.getItemsAsList()
arr.add -1
WScript.Echo arr.getItemsAsList()

Set arr = CreateObject("Ravelin.clsArrayBoolean")
arr.add True
arr.add "False"
arr.add 7
WScript.Echo arr.getItemsAsList(), arr.addTo(0, False), arr.getItemsAsList()
keepValues = True
resetCount = False
arr.allocateSpacePublic 10, keepValues, resetCount
WScript.Echo arr.getCount(), keepValues, resetCount
arr.clear True
WScript.Echo arr.getCount()
arr.add "maybe"
Report "clsArrayBoolean add ""maybe"""

Set arr = CreateObject("Ravelin.clsArrayString")
WScript.Echo arr.add("a"), arr.add("b,c"), arr.add(12.5)
WScript.Echo arr.getItemsAsList(), arr.getItemsAsList(";"), arr.find("B,C"), arr.find("z")
WScript.Echo arr.RemoveItemWithKey("a"), arr.getItemsAsList()
WScript.Echo arr.item(5)
Report "clsArrayString item(5)"

Set arr = CreateObject("Ravelin.clsArrayDouble")
arr.add 0.1
arr.add "1e300"
arr.add -0
WScript.Echo arr.getItemsAsList()
arr.add "x"
Report "clsArrayDouble add ""x"""

Set arr = CreateObject("Ravelin.clsArraySingle")
arr.add 1E+39
Report "clsArraySingle add 1E+39"
arr.add 16777217
WScript.Echo arr.item(0)
