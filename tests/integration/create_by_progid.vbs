' Creates the control by both ProgIDs from a late-bound script client and reads a property by name.
Option Explicit
Dim failures : failures = 0
Sub Check(cond, what)
  If Not cond Then
    WScript.Echo "FAILED: " & what
    failures = failures + 1
  End If
End Sub

Dim progId, ctl
For Each progId In Array("TOV.HTMLIEControl", "TOV.HTMLIEControl.1")
  On Error Resume Next
  Set ctl = CreateObject(progId)
  If Err.Number <> 0 Then
    WScript.Echo "FAILED: CreateObject(" & progId & "): " & Hex(Err.Number)
    failures = failures + 1
    Err.Clear
  Else
    On Error GoTo 0
    Check ctl.Version = 62, progId & ".Version = 62"
    WScript.Echo progId & ".Version = " & ctl.Version
    Set ctl = Nothing
  End If
  On Error GoTo 0
Next

If failures = 0 Then WScript.Echo "SCRIPT-OK"
WScript.Quit failures
