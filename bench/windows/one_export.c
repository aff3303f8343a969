/* A library with a single export: what loading one costs at least. */
__declspec(dllexport) int OneExport(void);
int OneExport(void) { return 1; }
