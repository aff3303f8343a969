// WFINFO.dll in C#: every export as a static method of Wfinfo, with texts as string.
//
//   string subject = Wfinfo.RootHeader("Subject");
//
// Texts are copied as soon as a call returns. What code page 932 cannot hold travels as the library's escape and comes back
// as it was. null is a null text, where an export takes one. A number-or-text parameter (WfinfoValue) takes long or string. The
// library's texts belong to the whole process: two threads that call at the same time need a lock around each call. Errors
// of the library are modal boxes, in any program: call WfinfoErrors.ReportTo first.
//
// Made by tools/make_bindings.py; for 64-bit programs. C# 5, so that PowerShell can compile it.
using System;
using System.Collections.Generic;
using System.Runtime.InteropServices;
using System.Text;

public static class HostText {
  // Two numbers a range, the first and the last full-width character.
  private static readonly ushort[] FullWidth = { @WIDE@ };

  private const uint NoBestFit = 0x400;

  [DllImport("kernel32.dll", ExactSpelling = true)]
  private static extern int WideCharToMultiByte(uint page, uint flags, ref char unit, int count, byte[] bytes, int size, IntPtr instead, out int lost);

  [DllImport("kernel32.dll", ExactSpelling = true, CharSet = CharSet.Unicode)]
  private static extern int MultiByteToWideChar(uint page, uint flags, byte[] bytes, int size, [Out] char[] units, int count);

  private static bool IsFullWidth(char unit) {
    for (int n = 0; n < FullWidth.Length; n += 2) {
      if (unit >= FullWidth[n] && unit <= FullWidth[n + 1]) return true;
    }
    return false;
  }

  /// <summary>The library's text, with a zero at its end: code page 932, with an escape of four bytes for what it cannot hold.</summary>
  public static byte[] Bytes(string text) {
    if (text == null) return null;
    var host = new List<byte>(text.Length * 2 + 1);
    var bytes = new byte[4];
    foreach (char each in text) {
      char unit = each;
      int lost = 0;
      int size = unit == 0x1A ? 0 : WideCharToMultiByte(932, NoBestFit, ref unit, 1, bytes, 4, IntPtr.Zero, out lost);
      if (size > 0 && lost == 0) {
        for (int n = 0; n < size; ++n) host.Add(bytes[n]);
        continue;
      }
      host.Add(0x1A);
      host.Add((byte)(0x80 | (unit & 0x7F)));
      host.Add((byte)(0x80 | (unit >> 8 & 0x7F)));
      host.Add((byte)(0x84 | (unit >> 7 & 1) | (unit >> 15 & 1) << 1 | (IsFullWidth(unit) ? 8 : 0)));
    }
    host.Add(0);
    return host.ToArray();
  }

  /// <summary>And back, from bytes without a zero.</summary>
  public static string Text(byte[] host) {
    var text = new StringBuilder(host.Length);
    var pair = new byte[2];
    var units = new char[2];
    for (int at = 0; at < host.Length;) {
      if (host[at] == 0x1A && at + 3 < host.Length && (host[at + 1] & 0x80) != 0 && (host[at + 2] & 0x80) != 0 && (host[at + 3] & 0x74) == 0x04) {
        text.Append((char)((host[at + 1] & 0x7F) | (host[at + 3] & 1) << 7 | (host[at + 2] & 0x7F) << 8 | (host[at + 3] >> 1 & 1) << 15));
        at += 4;
        continue;
      }
      bool lead = (host[at] >= 0x81 && host[at] <= 0x9F) || (host[at] >= 0xE0 && host[at] <= 0xFC);
      int size = lead && at + 1 < host.Length ? 2 : 1;
      pair[0] = host[at];
      pair[1] = size == 2 ? host[at + 1] : (byte)0;
      int count = MultiByteToWideChar(932, 0, pair, size, units, 2);
      text.Append(units, 0, count);
      at += size;
    }
    return text.ToString();
  }

  internal static string Copied(IntPtr host) {
    if (host == IntPtr.Zero) return null;
    int size = 0;
    while (Marshal.ReadByte(host, size) != 0) ++size;
    var bytes = new byte[size];
    Marshal.Copy(host, bytes, 0, size);
    return Text(bytes);
  }
}

public static class WfinfoErrors {
  private delegate void Callback(IntPtr text);

  [StructLayout(LayoutKind.Sequential)]
  private struct Info {
    public uint Size;
    public int English;
    public IntPtr Callback;
  }

  private static readonly List<Callback> kept = new List<Callback>();  // the library never gives one back

  /// <summary>What the library tells goes to a handler, in the place of a box.</summary>
  public static void ReportTo(Action<string> handler, bool english) {
    Callback callback = text => handler(HostText.Copied(text));
    kept.Add(callback);
    var info = new Info { Size = (uint)Marshal.SizeOf(typeof(Info)), English = english ? 1 : 0,
                          Callback = Marshal.GetFunctionPointerForDelegate(callback) };
    IntPtr record = Marshal.AllocHGlobal(Marshal.SizeOf(typeof(Info)));
    Marshal.StructureToPtr(info, record, false);
    Wfinfo.NotifyWrenfoldInfo(record);
    Marshal.FreeHGlobal(record);
  }
}

/// <summary>A parameter that is a number or a text.</summary>
public struct WfinfoValue {
  private readonly long number;
  private readonly string text;

  private WfinfoValue(long number, string text) { this.number = number; this.text = text; }
  public static implicit operator WfinfoValue(long number) { return new WfinfoValue(number, null); }
  public static implicit operator WfinfoValue(string text) { return new WfinfoValue(0, text); }

  internal KeptValue Kept() { return new KeptValue(number, text); }
  internal static KeptValues KeptAll(WfinfoValue[] values, int most) { return new KeptValues(values, most); }
}

// The slot of a value; a text stays where it is until the call has returned.
internal sealed class KeptValue : IDisposable {
  private readonly GCHandle pinned;
  public long Slot { get; private set; }

  public KeptValue(long number, string text) {
    Slot = number;
    if (text == null) return;
    pinned = GCHandle.Alloc(HostText.Bytes(text), GCHandleType.Pinned);
    Slot = pinned.AddrOfPinnedObject().ToInt64();
  }
  public void Dispose() { if (pinned.IsAllocated) pinned.Free(); }
}

internal sealed class KeptValues : IDisposable {
  private readonly KeptValue[] values;

  public KeptValues(WfinfoValue[] given, int most) {
    if (given.Length > most) throw new ArgumentException("at most " + most + " further values");
    values = Array.ConvertAll(given, value => value.Kept());
  }
  public long Slot(int n) { return n < values.Length ? values[n].Slot : 0; }
  public void Dispose() { foreach (var value in values) value.Dispose(); }
}
