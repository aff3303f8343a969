// The machinery that expands catalogue rows: parameter lists and their C types.
//
// A parameter list is a parenthesised sequence of (Type, name) or (Type, name, "what it is"); () is empty.
// WFINFO_EACH(MACRO, (A, a), (B, b, "..")) expands MACRO for each, separated by commas.
#pragma once

// Deep enough for lists of 27 parameters.
#define WFINFO_EVAL(...) WFINFO_EVAL4(WFINFO_EVAL4(WFINFO_EVAL4(__VA_ARGS__)))
#define WFINFO_EVAL4(...) WFINFO_EVAL3(WFINFO_EVAL3(WFINFO_EVAL3(__VA_ARGS__)))
#define WFINFO_EVAL3(...) WFINFO_EVAL2(WFINFO_EVAL2(WFINFO_EVAL2(__VA_ARGS__)))
#define WFINFO_EVAL2(...) __VA_ARGS__
#define WFINFO_PARENS ()
#define WFINFO_EACH(macro, ...) __VA_OPT__(WFINFO_EVAL(WFINFO_EACH_STEP(macro, __VA_ARGS__)))
#define WFINFO_EACH_STEP(macro, first, ...) \
  macro first __VA_OPT__(, WFINFO_EACH_AGAIN WFINFO_PARENS(macro, __VA_ARGS__))
#define WFINFO_EACH_AGAIN() WFINFO_EACH_STEP

#define WFINFO_UNWRAP(...) __VA_ARGS__

// (Type, name[, doc]) as a C parameter.
#define WFINFO_C_PARAMETER(type, name, ...) WFINFO_C_##type(name)
#define WFINFO_C_Text(name) const char* name
#define WFINFO_C_OptText(name) const char* name
#define WFINFO_C_RawText(name) const char* name
#define WFINFO_C_WideText(name) const wchar_t* name
#define WFINFO_C_Value(name) long long name
#define WFINFO_C_Int64(name) long long name
#define WFINFO_C_Int32(name) int name
#define WFINFO_C_UInt32(name) unsigned int name
#define WFINFO_C_Handle(name) void* name
#define WFINFO_C_Bytes(name) const void* name
#define WFINFO_C_Record(name) void* name
#define WFINFO_C_Rest(name) ...
#define WFINFO_C_PARAMETERS(params) (WFINFO_C_LIST params)
#define WFINFO_C_LIST(...) WFINFO_EACH(WFINFO_C_PARAMETER, __VA_ARGS__)

// Result types.
#define WFINFO_RESULT_Int long long
#define WFINFO_RESULT_Int32 int
#define WFINFO_RESULT_UInt32 unsigned int
#define WFINFO_RESULT_Str const char*
#define WFINFO_RESULT_OptStr const char*  // null in the cases that the row tells
#define WFINFO_RESULT_Handle void*
#define WFINFO_RESULT_Void void

// Two optional texts that name a folder in the host's manner; used in many parameter lists.
#define WFINFO_FOLDER_PAIR                                                             \
  (OptText, folder1,                                                                   \
   "folder: its full path, or a name by which the host finds it (the small host: its " \
   "path in the tree, or its name); null or \"\" for the current one"),                \
      (OptText, folder2, "second half of the name where the host splits it; null mostly")

// The same where no name does not mean the current folder.
#define WFINFO_NAMED_FOLDER_PAIR                                                       \
  (OptText, folder1,                                                                   \
   "folder: its full path, or a name by which the host finds it (the small host: its " \
   "path in the tree, or its name); the small host does nothing for null and \"\""),   \
      (OptText, folder2, "second half of the name where the host splits it; null mostly")
