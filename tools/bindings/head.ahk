; WFINFO.dll in AutoHotkey v2 (64-bit): every export as a static method of Wfinfo, with texts as strings.
;
;   #Include wfinfo.ahk
;   DllCall("LoadLibrary", "Str", "C:\path\WFINFO.dll", "Ptr")
;   MsgBox Wfinfo.ToUpper("text")
;
; Texts are copied as soon as a call returns. What code page 932 cannot hold travels as the library's escape and comes back
; as it was. WfinfoText.Null is a null text, where an export takes one. A number-or-text parameter takes a number or a string.
; Errors of the library are modal boxes, in any program: call WfinfoText.ReportErrorsTo first.
;
; Made by tools/make_bindings.py.
#Requires AutoHotkey v2.0 64-bit

class WfinfoText {
    static Null := {}
    ; Two numbers a range, the first and the last full-width character.
    static FullWidth := [@WIDE@]

    static IsFullWidth(unit) {
        n := 1
        while n < WfinfoText.FullWidth.Length {
            if unit >= WfinfoText.FullWidth[n] && unit <= WfinfoText.FullWidth[n + 1]
                return true
            n += 2
        }
        return false
    }

    ; The library's text with a zero at its end: code page 932, with an escape of four bytes for what it cannot hold.
    static Bytes(text) {
        if text == WfinfoText.Null
            return 0
        text := String(text)
        host := Buffer(4 * StrLen(text) + 1, 0), size := 0, wide := Buffer(2), lost := Buffer(4)
        loop StrLen(text) {
            unit := Ord(SubStr(text, A_Index, 1))
            if unit > 0xFFFF  ; Ord joins a pair: take its half
                unit := NumGet(StrPtr(text) + 2 * (A_Index - 1), 'UShort')
            NumPut('UShort', unit, wide), NumPut('Int', 0, lost)
            count := unit = 0x1A ? 0 : DllCall('WideCharToMultiByte', 'UInt', 932, 'UInt', 0x400, 'Ptr', wide, 'Int', 1,
                'Ptr', host.Ptr + size, 'Int', 4, 'Ptr', 0, 'Ptr', lost, 'Int')
            if count && !NumGet(lost, 'Int') {
                size += count
                continue
            }
            NumPut('UChar', 0x1A, 'UChar', 0x80 | unit & 0x7F, 'UChar', 0x80 | unit >> 8 & 0x7F,
                'UChar', 0x84 | unit >> 7 & 1 | (unit >> 15 & 1) << 1 | (WfinfoText.IsFullWidth(unit) ? 8 : 0), host, size)
            size += 4
        }
        NumPut('UChar', 0, host, size)
        return host
    }

    static Address(bytes) => bytes ? bytes.Ptr : 0

    static Copied(address) {
        if !address
            return ''
        text := '', units := Buffer(4)
        while byte := NumGet(address, 'UChar') {
            next := NumGet(address + 1, 'UChar')
            if byte = 0x1A && next & 0x80 {
                third := NumGet(address + 2, 'UChar')
                fourth := third ? NumGet(address + 3, 'UChar') : 0
                if third & 0x80 && (fourth & 0x74) = 4 {
                    NumPut('UShort', next & 0x7F | (fourth & 1) << 7 | (third & 0x7F) << 8 | (fourth >> 1 & 1) << 15, units)
                    text .= StrGet(units, 1, 'UTF-16'), address += 4
                    continue
                }
            }
            size := (byte >= 0x81 && byte <= 0x9F || byte >= 0xE0 && byte <= 0xFC) && next ? 2 : 1
            count := DllCall('MultiByteToWideChar', 'UInt', 932, 'UInt', 0, 'Ptr', address, 'Int', size, 'Ptr', units, 'Int', 2, 'Int')
            text .= StrGet(units, count, 'UTF-16'), address += size
        }
        return text
    }

    ; What the library tells goes to a function, in the place of a box.
    static ReportErrorsTo(report, english := true) {
        info := Buffer(16)
        NumPut('UInt', 16, 'Int', english, 'Ptr', CallbackCreate((text) => (report(WfinfoText.Copied(text)), 0), , 1), info)
        Wfinfo.NotifyWrenfoldInfo(info.Ptr)
    }

    ; A number, or the bytes of a text, which live as long as what is returned.
    static Value(value) => value is Number ? value : WfinfoText.Bytes(value)
    static Slot(value) => value is Number ? value : value.Ptr
    static Values(values) {
        kept := []
        for value in values
            kept.Push(WfinfoText.Value(value))
        return kept
    }
    static Slots(kept) {
        slots := []
        for value in kept
            slots.Push('Int64', WfinfoText.Slot(value))
        return slots
    }
}
