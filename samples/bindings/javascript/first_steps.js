// The library in JavaScript (docs/bindings.md): node first_steps.js C:\path\WFINFO.dll
const { load, reportErrorsTo } = require('./wfinfo');

const library = load(process.argv[2] || 'WFINFO.dll');
// Errors to standard error: a box would wait for somebody to close it.
reportErrorsTo(library, text => console.error(text));
console.log(`interface ${library.GetWFInfoVersion(0)}`);
console.log(library.ToUpper('café ☕ 漢字'));
console.log(library.FormatDate('Mon, 2 Jun 2025 09:00:00 +0900', 'YYYY/MM/DD'));
// Two results in one line are no matter: each is copied.
const list = 'Alice <alice@example.com>, "Bob, B." <bob@example.com>';
console.log(`${library.GetEmailList(list, 0)}; ${library.GetEmailList(list, 1)}`);
library.ToUpper(null);
