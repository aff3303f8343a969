# Sends a mail through whatever program is the system's mail client: Simple MAPI from PowerShell (64-bit).
#
#   .\Send-Mail.ps1 -To jo@example.jp -Subject Hello -Text "Dear Jo" -File C:\report.txt
#
# Nothing of ours is loaded by name: mapi32.dll of the system finds the library that is registered (docs/simple-mapi.md).
# Texts go as UTF-8, which the library recognises; paths go in the system's own code page.
param(
  [Parameter(Mandatory)] [string] $To,
  [Parameter(Mandatory)] [string] $Subject,
  [Parameter(Mandatory)] [string] $Text,
  [string] $File
)

Add-Type -TypeDefinition @'
using System;
using System.Runtime.InteropServices;
using System.Text;

public static class SimpleMapi {
  [StructLayout(LayoutKind.Sequential)]
  struct Recipient {
    public uint Reserved, Class;
    public IntPtr Name, Address;
    public uint EntrySize;
    public IntPtr Entry;
  }

  [StructLayout(LayoutKind.Sequential)]
  struct FileRecord {
    public uint Reserved, Flags, Position;
    public IntPtr Path, Name, Type;
  }

  [StructLayout(LayoutKind.Sequential)]
  struct Message {
    public uint Reserved;
    public IntPtr Subject, Text, Type, Date, Conversation;
    public uint Flags;
    public IntPtr Originator;
    public uint RecipientCount;
    public IntPtr Recipients;
    public uint FileCount;
    public IntPtr Files;
  }

  [DllImport("mapi32.dll")]
  static extern uint MAPISendMail(IntPtr session, IntPtr window, ref Message message, uint flags, uint reserved);

  static IntPtr Bytes(Encoding encoding, string text) {
    byte[] bytes = encoding.GetBytes(text + "\0");
    IntPtr copy = Marshal.AllocHGlobal(bytes.Length);
    Marshal.Copy(bytes, 0, copy, bytes.Length);
    return copy;
  }

  static IntPtr Record<T>(T record) {
    IntPtr copy = Marshal.AllocHGlobal(Marshal.SizeOf(record));
    Marshal.StructureToPtr(record, copy, false);
    return copy;
  }

  // The few bytes allocated here live as long as this short script.
  public static uint Send(string to, string subject, string text, string file) {
    var message = new Message {
      Subject = Bytes(Encoding.UTF8, subject), Text = Bytes(Encoding.UTF8, text), RecipientCount = 1,
      Recipients = Record(new Recipient { Class = 1, Address = Bytes(Encoding.Default, to) })
    };
    if (!string.IsNullOrEmpty(file)) {
      message.FileCount = 1;
      message.Files = Record(new FileRecord { Position = 0xFFFFFFFF, Path = Bytes(Encoding.Default, file) });
    }
    return MAPISendMail(IntPtr.Zero, IntPtr.Zero, ref message, 0, 0);
  }
}
'@

$code = [SimpleMapi]::Send($To, $Subject, $Text, $File)
"MAPISendMail: $code"
exit [int]($code -ne 0)
