VERSION 5.00
Begin VB.Form frmOrder 
   BorderStyle     =   3  'Fixed Dialog
   Caption         =   "Orders - Invoice"
   ClientHeight    =   4590
   ClientLeft      =   45
   ClientTop       =   330
   ClientWidth     =   6180
   LinkTopic       =   "Form1"
   MaxButton       =   0   'False
   MinButton       =   0   'False
   ScaleHeight     =   4590
   ScaleWidth      =   6180
   StartUpPosition =   2  'CenterScreen
   Begin VB.CommandButton cmdClose 
      Cancel          =   -1  'True
      Caption         =   "&Close"
      Height          =   375
      Left            =   4800
      TabIndex        =   4
      Top             =   4080
      Width           =   1215
   End
   Begin VB.CommandButton cmdPrint 
      Caption         =   "&Print"
      Height          =   375
      Left            =   3480
      TabIndex        =   3
      Top             =   4080
      Width           =   1215
   End
   Begin VB.CommandButton cmdCalculate 
      Caption         =   "C&alculate"
      Default         =   -1  'True
      Height          =   375
      Left            =   2160
      TabIndex        =   2
      Top             =   4080
      Width           =   1215
   End
   Begin VB.ListBox lstLines 
      Height          =   2985
      Left            =   120
      TabIndex        =   1
      Top             =   600
      Width           =   5895
   End
   Begin VB.TextBox txtCustomer 
      Height          =   315
      Left            =   120
      TabIndex        =   0
      Top             =   120
      Width           =   5895
   End
   Begin VB.Label lblTotal 
      Alignment       =   1  'Right Justify
      Caption         =   "0.00"
      Height          =   255
      Left            =   3480
      TabIndex        =   5
      Top             =   3720
      Width           =   2535
   End
End
Attribute VB_Name = "frmOrder"
Attribute VB_GlobalNameSpace = False
Attribute VB_Creatable = False
Attribute VB_PredeclaredId = True
Attribute VB_Exposed = False
Option Explicit

Private WithEvents mInvoice As CInvoice
Attribute mInvoice.VB_VarHelpID = -1

Private Const zolModuleIndex As Long = 1 'ID
Private Sub Form_Load()
    zolProfiler.zolProcIn 1
    zolProfiler.zolExecuteLine 1
    Set mInvoice = gInvoice
    zolProfiler.zolExecuteLine 2
    txtCustomer.Text = mInvoice.Customer
    zolProfiler.zolExecuteLine 3
    RefreshLines
zolProfiler.zolExecuteLine 4
zolProfiler.zolProcOut 1
End Sub

Private Sub RefreshLines()
    zolProfiler.zolProcIn 2
    Dim item As CLineItem
    zolProfiler.zolExecuteLine 5
    lstLines.Clear
    zolProfiler.zolExecuteLine 6
    For Each item In mInvoice.Lines
        zolProfiler.zolExecuteLine 7
        lstLines.AddItem PadRight(item.Description, 20) & vbTab & FormatMoney(item.Amount)
    Next item
    zolProfiler.zolExecuteLine 8
    lblTotal.Caption = FormatMoney(mInvoice.Total)
zolProfiler.zolExecuteLine 9
zolProfiler.zolProcOut 2
End Sub

Private Sub cmdCalculate_Click()
    zolProfiler.zolProcIn 3
    Dim started As Long
    zolProfiler.zolExecuteLine 10
    started = GetTickCount()
'zolLine 11:    If lstLines.ListCount = 0 Then Exit Sub
    zolProfiler.zolExecuteLine 11: If lstLines.ListCount = 0 Then zolProfiler.zolProcOut 3: Exit Sub
    zolProfiler.zolExecuteLine 12
    mInvoice.Customer = Trim$(txtCustomer.Text)
    zolProfiler.zolExecuteLine 13
    RefreshLines
    zolProfiler.zolExecuteLine 14
    Debug.Print "Calculated in "; GetTickCount() - started; " ms"
zolProfiler.zolExecuteLine 15
zolProfiler.zolProcOut 3
End Sub

Private Sub cmdPrint_Click()
    zolProfiler.zolProcIn 4
    zolProfiler.zolExecuteLine 16
    On Error GoTo PrintFailed
    zolProfiler.zolExecuteLine 17
    Printer.Print mInvoice.AsText
    zolProfiler.zolExecuteLine 18
    Printer.EndDoc
    zolProfiler.zolExecuteLine 19
    zolProfiler.zolProcOut 4
    Exit Sub
PrintFailed:
    zolProfiler.zolExecuteLine 20
    MsgBox "Can't print: " & Err.Description, vbExclamation
zolProfiler.zolExecuteLine 21
zolProfiler.zolProcOut 4
End Sub

Private Sub cmdClose_Click()
    zolProfiler.zolProcIn 5
    zolProfiler.zolExecuteLine 22
    Unload Me
zolProfiler.zolExecuteLine 23
zolProfiler.zolProcOut 5
End Sub

Private Sub mInvoice_Changed()
    zolProfiler.zolProcIn 6
    zolProfiler.zolExecuteLine 24
    lblTotal.Caption = FormatMoney(mInvoice.Total) ' keep the total current
zolProfiler.zolExecuteLine 25
zolProfiler.zolProcOut 6
End Sub
