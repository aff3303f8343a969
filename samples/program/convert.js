// Texts of the library in JavaScript and back, with wfinfo.js (docs/from-your-program.md): node convert.js
const { toHost, fromHost } = require('./wfinfo');

const host = toHost('café 漢字');  // bytes, with a zero behind them
const text = fromHost(host.subarray(0, host.length - 1));
console.log(`${host.length - 1} bytes of host text: ${text}`);
