WScript.Echo "utf-8 with a mark: café"
WScript.Echo 1 + 2, WScript.ScriptName
