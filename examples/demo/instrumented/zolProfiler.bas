Attribute VB_Name = "zolProfiler"
Option Explicit

' Probes of the profiler; the run-time library replaces them.
Public Sub zolProcIn(ByVal ID As Long)
End Sub

Public Sub zolProcOut(ByVal ID As Long)
End Sub

Public Sub zolExecuteLine(ByVal ID As Long)
End Sub
