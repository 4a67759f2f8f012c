' Keyed collections and the column descriptor: add under keys, replace, look up by key or
' position, list keys, and copy a column. Run with: ravelin examples/collections.vbs
Option Explicit
SetLocale "en-US"

Dim prices, item, settings, keys, value, key, i

' A price table under product codes. Keys ignore case and must be unique.
Set prices = CreateObject("Ravelin.clsCollection")
WScript.Echo "add COFFEE: " & prices.add(2.5, "COFFEE")
WScript.Echo "add TEA: " & prices.add(1.8, "TEA")
WScript.Echo "add CAKE: " & prices.add(3.2, "CAKE")
WScript.Echo "add coffee again: " & prices.add(9.9, "coffee")
WScript.Echo "  ...ignoring the duplicate: " & prices.add(9.9, "coffee", False, True) & ", price " & prices.item("Coffee")
WScript.Echo "  ...overriding it: " & prices.add(2.7, "coffee", True) & ", price " & prices.item("COFFEE")

' A replaced item moves to the end.
WScript.Echo "setNewValueForItem TEA: " & prices.setNewValueForItem("TEA", 2)
For Each item In prices
  WScript.Echo "  " & item
Next
WScript.Echo "item(1) = " & prices.item(1) & ", itemExists(""tea"") = " & prices.itemExists("tea")
WScript.Echo "missing key gives Empty: " & IsEmpty(prices.item("JUICE"))

On Error Resume Next
value = prices.item("JUICE", True)
WScript.Echo "asked to raise: " & Err.Number & " " & Err.Source & " " & Err.Description
Err.Clear
value = prices.item(7, True)
WScript.Echo "asked to raise: " & Err.Number & " " & Err.Source & " " & Err.Description
On Error GoTo 0

WScript.Echo "remove(""CAKE""): " & prices.remove("CAKE") & ", again: " & prices.remove("CAKE")
prices.removeAll
WScript.Echo "after removeAll: " & prices.getCount

' Settings that can give their keys back.
Set settings = CreateObject("Ravelin.clsCollectionAccessKey")
settings.add "COM1", "Printer"
settings.add "9600", "Baud"
settings.add "Yes", "Drawer"
Set keys = settings.listKeys()
WScript.Echo "keys: " & keys.getItemsAsList("'") & " (" & settings.getClassIdAsString() & ")"
For i = 1 To settings.getCount
  value = settings.ItemAndKey(i, key)
  WScript.Echo "  " & i & ": " & key & " = " & value
Next

' A column descriptor and its copy.
Dim column, copy
Set column = CreateObject("Ravelin.clsDataColumn")
column.setColumnId "UNIT_PRICE"
column.setDisplayName "Unit price"
column.setDataType DTS_Numeric
column.setFormat "#,##0.00"
Set copy = column.generateCopy()
copy.setDisplayName "Price"
WScript.Echo "column: " & column.getColumnId() & ", " & column.getDisplayName() & ", type " & column.getDataType()
WScript.Echo "copy:   " & copy.getColumnId() & ", " & copy.getDisplayName() & ", type " & copy.getDataType() & ", format " & copy.getFormat()

' Columns kept in a collection of copyable objects.
Dim columns
Set columns = CreateObject("Ravelin.clsCollectionObjects")
columns.add column, "price"
columns.add copy, "price2"
WScript.Echo "columns: " & columns.getCount & ", first is " & columns.item(1).getDisplayName()

On Error Resume Next
value = column.getParameterValue("width")
WScript.Echo "getParameterValue: " & Err.Number & " " & Err.Source & " " & Err.Description
