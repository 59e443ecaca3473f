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

Private Sub Form_Load()
    Set mInvoice = gInvoice
    txtCustomer.Text = mInvoice.Customer
    RefreshLines
End Sub

Private Sub RefreshLines()
    Dim item As CLineItem
    lstLines.Clear
    For Each item In mInvoice.Lines
        lstLines.AddItem PadRight(item.Description, 20) & vbTab & FormatMoney(item.Amount)
    Next item
    lblTotal.Caption = FormatMoney(mInvoice.Total)
End Sub

Private Sub cmdCalculate_Click()
    Dim started As Long
    started = GetTickCount()
    If lstLines.ListCount = 0 Then Exit Sub
    mInvoice.Customer = Trim$(txtCustomer.Text)
    RefreshLines
    Debug.Print "Calculated in "; GetTickCount() - started; " ms"
End Sub

Private Sub cmdPrint_Click()
    On Error GoTo PrintFailed
    Printer.Print mInvoice.AsText
    Printer.EndDoc
    Exit Sub
PrintFailed:
    MsgBox "Can't print: " & Err.Description, vbExclamation
End Sub

Private Sub cmdClose_Click()
    Unload Me
End Sub

Private Sub mInvoice_Changed()
    lblTotal.Caption = FormatMoney(mInvoice.Total) ' keep the total current
End Sub
