// WFINFO.dll in JavaScript: every export as a function, with texts as strings. Needs Node for Windows and koffi (npm).
//
//   const library = require('./wfinfo').load('WFINFO.dll');
//   console.log(library.RootHeader('Subject'));
//
// Texts are copied as soon as a call returns. What code page 932 cannot hold travels as the library's escape and comes back
// as it was. null is a null text, where an export takes one. A number-or-text parameter takes a number, a BigInt or a string;
// handles and records are addresses (a number or a BigInt). Errors of the library are modal boxes, in any program: call
// reportErrorsTo(library, text => ...) first.
//
// Made by tools/make_bindings.py.
'use strict';

const koffi = require('koffi');

// Two numbers a range, the first and the last full-width character.
const fullWidth = [@WIDE@];

const kernel = koffi.load('kernel32.dll');
const wideToBytes = kernel.func('int WideCharToMultiByte(uint, uint, const void *, int, void *, int, void *, void *)');
const bytesToWide = kernel.func('int MultiByteToWideChar(uint, uint, const void *, int, void *, int)');
const NO_BEST_FIT = 0x400;

function isFullWidth(unit) {
  for (let n = 0; n < fullWidth.length; n += 2) {
    if (unit >= fullWidth[n] && unit <= fullWidth[n + 1]) return true;
  }
  return false;
}

// The library's text of a string, with a zero at its end: code page 932, with an escape of four bytes for what it cannot hold.
function toHost(text) {
  const host = [];
  const wide = Buffer.alloc(2);
  const bytes = Buffer.alloc(4);
  const lost = Buffer.alloc(4);
  for (let at = 0; at < text.length; ++at) {
    const unit = text.charCodeAt(at);
    if (unit < 0x80 && unit !== 0x1a) {
      host.push(unit);
      continue;
    }
    wide.writeUInt16LE(unit);
    lost.fill(0);
    const size = unit === 0x1a ? 0 : wideToBytes(932, NO_BEST_FIT, wide, 1, bytes, 4, null, lost);
    if (size > 0 && lost.readInt32LE() === 0) {
      host.push(...bytes.subarray(0, size));
      continue;
    }
    host.push(0x1a, 0x80 | unit & 0x7f, 0x80 | unit >> 8 & 0x7f,
      0x84 | unit >> 7 & 1 | (unit >> 15 & 1) << 1 | (isFullWidth(unit) ? 8 : 0));
  }
  host.push(0);
  return Buffer.from(host);
}

// And back, from bytes without a zero.
function fromHost(host) {
  let text = '';
  const units = Buffer.alloc(4);
  for (let at = 0; at < host.length;) {
    const byte = host[at];
    if (byte === 0x1a && at + 3 < host.length && host[at + 1] & 0x80 && host[at + 2] & 0x80 && (host[at + 3] & 0x74) === 4) {
      text += String.fromCharCode(host[at + 1] & 0x7f | (host[at + 3] & 1) << 7 | (host[at + 2] & 0x7f) << 8 | (host[at + 3] >> 1 & 1) << 15);
      at += 4;
    } else if (byte < 0x80) {
      text += String.fromCharCode(byte);
      at += 1;
    } else {
      const lead = byte <= 0x9f || (byte >= 0xe0 && byte <= 0xfc);
      const size = lead && byte !== 0x80 && at + 1 < host.length ? 2 : 1;
      const count = bytesToWide(932, 0, host.subarray(at, at + size), size, units, 2);
      for (let n = 0; n < count; ++n) text += String.fromCharCode(units.readUInt16LE(2 * n));
      at += size;
    }
  }
  return text;
}

const strlen = koffi.load('msvcrt.dll').func('size_t strlen(const void *)');

// The text at an address, copied.
function copied(address) {
  if (address === null) return null;
  return fromHost(Buffer.from(koffi.decode(address, 'uint8_t', Number(strlen(address)))));
}

const errorCallback = koffi.pointer(koffi.proto('void WfinfoErrorCallback(void *text)'));
const errorInfo = koffi.struct('WfinfoErrorInfo', { size: 'uint32_t', english: 'int32_t', callback: 'void *' });

// What the library tells goes to a function, in the place of a box.
function reportErrorsTo(library, report, english = true) {
  const record = Buffer.alloc(koffi.sizeof(errorInfo));
  const callback = koffi.register(text => { report(copied(text)); }, errorCallback);
  koffi.encode(record, errorInfo, { size: record.length, english: english ? 1 : 0, callback });
  library.NotifyWrenfoldInfo(koffi.address(record));
}

const parameterTypes = { text: 'const void *', wide: 'const char16_t *', int32: 'int', uint32: 'uint', int64: 'int64_t', handle: 'intptr_t', value: 'intptr_t' };
const resultTypes = { text: 'void *', int32: 'int', uint32: 'uint', int64: 'int64_t', handle: 'intptr_t', void: 'void' };

function load(path) {
  const library = koffi.load(path);
  const functions = {};
  for (const [name, [result, ...parameters]] of Object.entries(exports_)) {
    const kinds = parameters.map(parameter => parameter.split(' ')[0]);
    const rest = kinds[kinds.length - 1] === 'rest';
    const fixed = rest ? kinds.slice(0, -1) : kinds;
    const declared = fixed.map(kind => parameterTypes[kind]);
    const bound = library.func(name, resultTypes[result], rest ? [...declared, '...'] : declared);
    functions[name] = (...given) => {
      if (given.length !== fixed.length && !(rest && given.length > fixed.length)) {
        throw new TypeError(`${name} takes ${parameters.map(parameter => parameter.split(' ')[1]).join(', ') || 'nothing'}`);
      }
      const kept = [];  // texts that values point at, until the call has returned
      const slot = value => {
        if (typeof value !== 'string') return value;
        const bytes = toHost(value);
        kept.push(bytes);
        return koffi.address(bytes);
      };
      const slots = given.flatMap((value, n) => {
        const kind = kinds[n] || 'rest';
        if (kind === 'rest') return ['intptr_t', slot(value)];
        if (kind === 'value') return [slot(value)];
        return [kind === 'text' && typeof value === 'string' ? toHost(value) : value];
      });
      const answer = bound(...slots);
      return result === 'text' ? copied(answer) : answer;
    };
  }
  return functions;
}
