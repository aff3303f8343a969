/* What the stand-in for WinINet does, and what it saw. */
#pragma once

struct WinInetState {
  int fail_open;         /* InternetOpenA fails */
  int fail_open_url;     /* InternetOpenUrlA fails */
  int fail_read_after;   /* InternetReadFileExA fails after this many calls; negative: never */
  unsigned read_error;   /* its error code */
  long long body_size;   /* bytes of 'b' that reads give, then the end */
  int fill_whole;        /* reads fill the offered room whole */
  int response_succeeds; /* InternetGetLastResponseInfoA gives response_code */
  unsigned response_code;
  int empty_header;          /* HttpQueryInfoA succeeds with an empty value */
  void (*on_open_url)(void); /* called once, inside the next InternetOpenUrlA */
  void (*on_read)(void);     /* called once, inside the next InternetReadFileExA */
  /* The same, at the end of the call, when the result is made. */
  void (*on_open_url_done)(void);
  void (*on_read_done)(void);

  int open_handles;             /* opened and not closed */
  int opens;                    /* InternetOpenA calls */
  int closed_order[64], closed; /* handles in the order in which they were closed */
  unsigned flags;               /* of the last InternetOpenUrlA */
  char agent[64], url[256];
  int read_calls;
  unsigned rooms[256];   /* room offered by each read */
  int bad_handles;       /* calls with a handle that is not open */
  char header_name[256]; /* that HttpQueryInfoA was asked for by name */
};
