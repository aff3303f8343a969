# Sends a mail through whatever program is the system's mail client: Simple MAPI from PowerShell (64-bit).
#
#   .\Send-Mail.ps1 -To jo@example.jp -Subject Hello -Text "Dear Jo" -File C:\report.txt
#   .\Send-Mail.ps1 -To jo@example.jp -Subject Hello -Text "Dear Jo" -File C:\a.txt, C:\b.txt -Name first.txt, second.txt
#
# Nothing of ours is loaded by name: mapi32.dll of the system finds the library that is registered (docs/simple-mapi.md).
# Subject and text go as UTF-8, which the library recognises; addresses, paths and names in code page 932, and an exception tells of a
# character that it lacks.
param(
  [Parameter(Mandatory)] [string] $To,
  [Parameter(Mandatory)] [string] $Subject,
  [Parameter(Mandatory)] [string] $Text,
  [string[]] $File = @(),
  [string[]] $Name = @()
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

  static readonly Encoding Host = Encoding.GetEncoding(932, new EncoderExceptionFallback(), new DecoderExceptionFallback());

  static IntPtr Records<T>(T[] records) {
    int size = Marshal.SizeOf(typeof(T));
    IntPtr copy = Marshal.AllocHGlobal(size * records.Length + 1);
    for (int n = 0; n < records.Length; ++n) Marshal.StructureToPtr(records[n], copy + n * size, false);
    return copy;
  }

  // The few bytes allocated here live as long as this short script.
  public static uint Send(string to, string subject, string text, string[] files, string[] names) {
    var records = new FileRecord[files.Length];
    for (int n = 0; n < files.Length; ++n) {
      records[n] = new FileRecord { Position = 0xFFFFFFFF, Path = Bytes(Host, files[n]) };
      if (n < names.Length) records[n].Name = Bytes(Host, names[n]);
    }
    var message = new Message {
      Subject = Bytes(Encoding.UTF8, subject), Text = Bytes(Encoding.UTF8, text), RecipientCount = 1,
      Recipients = Records(new[] { new Recipient { Class = 1, Address = Bytes(Host, to) } }),
      FileCount = (uint)files.Length, Files = Records(records)
    };
    return MAPISendMail(IntPtr.Zero, IntPtr.Zero, ref message, 0, 0);
  }
}
'@

$code = [SimpleMapi]::Send($To, $Subject, $Text, $File, $Name)
"MAPISendMail: $code"
exit [int]($code -ne 0)
