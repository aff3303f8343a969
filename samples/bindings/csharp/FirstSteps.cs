// The library in C# (docs/bindings.md): csc /platform:x64 FirstSteps.cs Wfinfo.cs, with WFINFO.dll beside the program.
using System;

public static class FirstSteps {
  public static void Main() {
    // Errors to standard error: a box would wait for somebody to close it.
    WfinfoErrors.ReportTo(text => Console.Error.WriteLine(text), true);
    Console.WriteLine("interface " + Wfinfo.GetWFInfoVersion(IntPtr.Zero));
    Console.WriteLine(Wfinfo.ToUpper("café ☕ 漢字"));
    Console.WriteLine(Wfinfo.FormatDate("Mon, 2 Jun 2025 09:00:00 +0900", "YYYY/MM/DD"));
    // Two results in one line are no matter: each is copied.
    string list = "Alice <alice@example.com>, \"Bob, B.\" <bob@example.com>";
    Console.WriteLine(Wfinfo.GetEmailList(list, 0) + "; " + Wfinfo.GetEmailList(list, 1));
    Wfinfo.ToUpper(null);
  }
}
