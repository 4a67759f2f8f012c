' The pair arrays: text pairs with a backward key search, a list sorted by a Long key, objects
' under text keys, and values with objects. Run with: ravelin examples/pair_arrays.vbs
Option Explicit

Dim found

' Calls getNextValueForKey once and shows what it answered.
Sub NextValue(pairs, key, ignoreCase)
  Dim value
  value = pairs.getNextValueForKey(key, found, ignoreCase)
  WScript.Echo "  getNextValueForKey(""" & key & """) = """ & value & """, found " & CStr(found)
End Sub

' Runs an action that should fail and shows the error it raised.
Sub ShowError(label, number, source, description)
  WScript.Echo "  " & label & " raises " & number & " from """ & source & """: " & description
End Sub

' clsArrayString2: duplicates are kept; the search walks them from the last row to the first.
Dim pairs
Set pairs = CreateObject("Ravelin.clsArrayString2")
WScript.Echo TypeName(pairs)
pairs.add "fruit", "pear"
pairs.add "veg", "leek"
pairs.add "fruit", "apple"
pairs.add "Fruit", "Plum"
WScript.Echo "  keys: " & pairs.getItemKeysAsList() & "; values: " & pairs.getItemsAsList("'")
NextValue pairs, "fruit", False
NextValue pairs, " fruit ", False
NextValue pairs, "fruit", False
NextValue pairs, "   ", False
pairs.resetSearch
NextValue pairs, "FRUIT", True
WScript.Echo "  getNextKeyForValue(""leek"") = " & pairs.getNextKeyForValue("leek", found)
pairs.setItemForKey "fruit", "quince"
pairs.setItemForKey "nut", "hazel"
WScript.Echo "  after setItemForKey: " & pairs.getItemsAsList() & " (count " & pairs.Count & ")"
pairs.orderValues
WScript.Echo "  after orderValues: " & pairs.getItemsAsList() & " with keys " & pairs.getItemKeysAsList()
WScript.Echo "  RemoveItemWithKey(""fruit"") = " & pairs.RemoveItemWithKey("fruit") & ", keys " & pairs.getItemKeysAsList()

' The index is checked against the table only: count 3 in 4 slots reads row 3, not row 4.
WScript.Echo "  item(3) = """ & pairs.item(3) & """"
On Error Resume Next
WScript.Echo pairs.item(4)
ShowError "item(4)", Err.Number, Err.Source, Err.Description
Err.Clear
On Error GoTo 0

Dim copy
Set copy = pairs.generateCopy()
copy.setItem "changed", 0
WScript.Echo "  generateCopy: " & copy.getItemsAsList() & "; the source keeps " & pairs.getItemsAsList()

' clsArrayStringLong: addSortAscByKey keeps the rows sorted by key, equal keys in arrival order.
Dim longs, i
Set longs = CreateObject("Ravelin.clsArrayStringLong")
WScript.Echo TypeName(longs)
WScript.Echo "  addSortAscByKey returns " & longs.addSortAscByKey("five", 5) & ", " & _
    longs.addSortAscByKey("three", 3) & ", " & longs.addSortAscByKey("five again", 5) & ", " & _
    longs.addSortAscByKey("one", 1)
For i = 0 To longs.getCount() - 1
  WScript.Echo "  " & i & ": " & longs.getItemLong(i) & " " & longs.getItemString(i)
Next
WScript.Echo "  findKey(5) from the start " & longs.findKey(5, False) & ", from the end " & _
    longs.findKey(5, True) & ", findKey(4) " & longs.findKey(4, False)
On Error Resume Next
longs.setItemString "x", 4
ShowError "setItemString at 4", Err.Number, Err.Source, Err.Description
Err.Clear
On Error GoTo 0

' clsArrayStringObject: objects under text keys; lookups by key take the last match.
Dim objects
Set objects = CreateObject("Ravelin.clsArrayStringObject")
WScript.Echo TypeName(objects)
objects.add "pairs", pairs
objects.add "longs", longs
objects.add "pairs", copy
WScript.Echo "  ItemIndex(""pairs"") = " & objects.ItemIndex("pairs") & ", find(""pairs"") holds " & _
    objects.find("pairs").getItemsAsList()
WScript.Echo "  removeWithKey(""pairs"") = " & objects.removeWithKey("pairs") & ", count " & objects.getCount()
WScript.Echo "  removeWithKey(""none"") = " & objects.removeWithKey("none")
On Error Resume Next
objects.removeWithKey "none", False, True
ShowError "removeWithKey(""none"", False, True)", Err.Number, Err.Source, Err.Description
Err.Clear
Set objects.item(7) = Nothing
ShowError "item(7)", Err.Number, Err.Source, Err.Description
Err.Clear
On Error GoTo 0

' clsArrayVariObject: each row keeps a value, its variant type and an object.
Dim varis
Set varis = CreateObject("Ravelin.clsArrayVariObject")
WScript.Echo TypeName(varis)
varis.add 42, Nothing
varis.add "text", longs
varis.add Null, Nothing
For i = 0 To varis.getCount() - 1
  WScript.Echo "  " & i & ": " & TypeName(varis.getItemVariant(i)) & " " & varis.getItemVariant(i) & _
      ", object " & TypeName(varis.getItemObject(i))
Next
On Error Resume Next
varis.generateCopy
ShowError "generateCopy", Err.Number, Err.Source, Err.Description
Err.Clear
On Error GoTo 0
