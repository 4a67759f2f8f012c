' StringFunctions: fixed-width fields for receipts, picture formatting, input cleaning, bar-code
' check digits and character codes. Run with: ravelin examples/string_functions.vbs
Option Explicit

Dim s, width
Set s = CreateObject("Ravelin.StringFunctions")

' Fields of fixed width: PadL and PadR cut over-long text on the right, both of them.
WScript.Echo "[" & s.PadL("42", 6) & "] [" & s.PadR("Coffee", 10, 46) & "] [" & s.PadL("ABCDE", 3) & "]"
width = 5
WScript.Echo s.PadZeroRight("42", width) & " " & s.StrZero(7.9, 3) & " " & s.StrZero(-5, 4) & " " & s.StrZero(12345, 3)
WScript.Echo "[" & s.StrCenter("  TOTAL ", 11) & "]"
WScript.Echo s.Stuff("ABCDEF", 2, 3, "xy") & " " & s.Stuff("AB", 5, 2, "XY") & "|"

' Pictures: a numeric picture right-aligns the number or shows stars when it does not fit.
WScript.Echo "[" & s.TRAN(1234.5, "###,##0.00") & "] [" & s.TRAN(12.5, "###,##0.00") & "] [" & s.TRAN(1234567, "###,##0.00") & "]"
WScript.Echo "[" & s.TRAN("abc", "XXXXX") & "] [" & s.TRAN("abcdefg", "!XXX") & "]"

' Cleaning input.
WScript.Echo s.ReturnOnlyDigits("(11) 4567-8901") & " " & s.HaveOnlyDigits("123") & " " & s.HaveOnlyDigits("12a")
WScript.Echo s.GetCleanCaption("&File && Edit") & "|" & s.StripNulls("  abc" & Chr(0) & "junk") & "|"

' Check digits of EAN-13, EAN-8 and a text that is not a bar code.
WScript.Echo s.GetBarCodeCheckDigit("590123412345") & " " & s.GetBarCodeCheckDigit("9638507") & " " & s.GetBarCodeCheckDigit("12A4")

' Character codes and bytes.
WScript.Echo s.ConvertStringToDec("AB") & " " & s.ConvertDecToString("072/105\033")
Dim bytes
bytes = s.StringToBytes("Hi")
WScript.Echo "bytes 0.." & UBound(bytes) & ": " & bytes(0) & " " & bytes(1) & " " & bytes(2) & " " & bytes(3) & " " & bytes(4)
WScript.Echo s.HowManyStrings("banana", "ana") & " " & s.HowManyStrings("aaa", "aa")

' Arrays of Variant to arrays of String.
Dim texts
texts = s.ParamArrayToString(Array(1, 2.5, "three"))
WScript.Echo TypeName(texts) & " " & Join(texts, ",")

' Identifiers are random: show only their shape.
Dim id
id = s.CreateGUID()
WScript.Echo Len(id) & " " & Mid(id, 15, 1)

On Error Resume Next
s.ConvertDecToString "65/"
WScript.Echo "65/: error " & Err.Number & " " & Err.Description
