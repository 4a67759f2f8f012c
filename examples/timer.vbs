' A periodic TimerMM raising Timer into the script while WScript.Sleep runs the thread's loop.
Dim ticks, shortest
ticks = 0
shortest = 1000000

Sub Clock_Timer(lMilliseconds)
  ticks = ticks + 1
  If lMilliseconds < shortest Then shortest = lMilliseconds
  ' The fifth tick switches the timer off from inside its own handler.
  If ticks = 5 Then clock.Enabled = False
End Sub

Set clock = CreateObject("Ravelin.TimerMM")
WScript.Echo "Interval", clock.Interval, "Resolution", clock.Resolution, "EventType", clock.EventType, "Enabled", clock.Enabled

' Validation: the error number and source; the value stays.
On Error Resume Next
clock.Enabled = True
WScript.Echo Err.Number, Err.Source, Err.Description
Err.Clear
clock.Interval = 0
WScript.Echo Err.Number, Err.Source, Err.Description
Err.Clear
clock.Resolution = -1
WScript.Echo Err.Number, Err.Source, Err.Description
Err.Clear
On Error GoTo 0

clock.Interval = 10
clock.EventType = etPeriodic
WScript.ConnectObject clock, "Clock_"
clock.Enabled = True
Do While clock.Enabled
  WScript.Sleep 20
Loop
' No tick arrives once the timer is off.
WScript.Sleep 50
WScript.Echo "ticks:", ticks, "enabled:", clock.Enabled, "none negative:", shortest >= 0

' A one-shot timer fires once and stays enabled until switched off.
ticks = 0
clock.EventType = etOneShot
clock.Interval = 5
clock.Enabled = True
Do While ticks = 0
  WScript.Sleep 10
Loop
WScript.Sleep 30
WScript.Echo "one-shot ticks:", ticks, "enabled:", clock.Enabled
clock.Enabled = False
WScript.DisconnectObject clock
