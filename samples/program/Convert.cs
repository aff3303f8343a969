// Texts of the library in C# and back, with Wfinfo.cs (docs/from-your-program.md): csc /platform:x64 Convert.cs Wfinfo.cs
using System;

public static class Convert {
  public static void Main() {
    byte[] host = HostText.Bytes("café 漢字");  // with a zero behind them
    Array.Resize(ref host, host.Length - 1);
    string text = HostText.Text(host);
    Console.WriteLine(host.Length + " bytes of host text: " + text);
  }
}
