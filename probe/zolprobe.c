/* libzolprobe: one connection per thread, messages of 12 bytes little-endian
 * (code, wParam, lParam), the registration followed by its 3,360-byte
 * record; every message waits for its 4-byte answer. */
#define _GNU_SOURCE
#include "zolprobe.h"

#include <errno.h>
#include <pthread.h>
#include <stdatomic.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

enum {
  kRegister = 0x401,
  kLine = 0x402,
  kProcIn = 0x403,
  kProcOut = 0x404,
  kSample = 0x405,
  kCalibrationStart = 0x406,
  kCalibrationEnd = 0x407,
  kThreadEnd = 0x408,
  kPdsBytes = 3360,
  kTitleAt = 12,
  kTitleBytes = 256,
  kPathBytes = 1024,
  kVbpAt = kTitleAt + kTitleBytes,
  kVbgAt = kVbpAt + kPathBytes,
  kIniAt = kVbgAt + kPathBytes,
  kCountsAt = kIniAt + kPathBytes,
  kRegisteredAnswer = -999999
};

static pthread_mutex_t g_socket_lock = PTHREAD_MUTEX_INITIALIZER;
/* The receiver keeps one calibration at a time: the samples of two threads
 * must not interleave. */
static pthread_mutex_t g_calibration_lock = PTHREAD_MUTEX_INITIALIZER;
static char g_socket_path[108];
static atomic_int g_next_id = 1;

static _Thread_local int t_fd = -1;
static _Thread_local int t_id = 0;

static void put32(unsigned char* p, unsigned int v) {
  p[0] = (unsigned char)(v & 0xFF);
  p[1] = (unsigned char)((v >> 8) & 0xFF);
  p[2] = (unsigned char)((v >> 16) & 0xFF);
  p[3] = (unsigned char)((v >> 24) & 0xFF);
}

/* UTF-8 text into a field of UTF-16LE units ended by a NUL; -1 when it
 * doesn't fit. */
static int put_text(unsigned char* field, size_t bytes, const char* text) {
  size_t units = 0;
  const unsigned char* s = (const unsigned char*)(text ? text : "");
  memset(field, 0, bytes);
  while (*s) {
    unsigned int cp = *s;
    int extra = 0;
    if (cp >= 0xF0) {
      cp &= 0x07;
      extra = 3;
    } else if (cp >= 0xE0) {
      cp &= 0x0F;
      extra = 2;
    } else if (cp >= 0xC0) {
      cp &= 0x1F;
      extra = 1;
    }
    ++s;
    for (int k = 0; k < extra && (*s & 0xC0) == 0x80; ++k, ++s) cp = (cp << 6) | (*s & 0x3F);
    if (cp > 0xFFFF) cp = '?';
    if ((units + 2) * 2 > bytes) return -1;
    field[2 * units] = (unsigned char)(cp & 0xFF);
    field[2 * units + 1] = (unsigned char)(cp >> 8);
    ++units;
  }
  return 0;
}

static int send_all(int fd, const unsigned char* data, size_t size) {
  while (size > 0) {
    ssize_t n = send(fd, data, size, MSG_NOSIGNAL);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return -1;
    data += n;
    size -= (size_t)n;
  }
  return 0;
}

static int read_answer(int fd, int* answer) {
  unsigned char a[4];
  size_t got = 0;
  while (got < 4) {
    ssize_t n = recv(fd, a + got, 4 - got, 0);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) return -1;
    got += (size_t)n;
  }
  *answer = (int)((unsigned int)a[0] | (unsigned int)a[1] << 8 | (unsigned int)a[2] << 16 |
                  (unsigned int)a[3] << 24);
  return 0;
}

static void drop_connection(void) {
  if (t_fd >= 0) close(t_fd);
  t_fd = -1;
}

/* Sends one message with an optional record behind it and waits for the
 * answer. */
static int call(unsigned int msg, int w, int l, const unsigned char* record, size_t record_size,
                int* answer) {
  unsigned char frame[12 + kPdsBytes];
  if (t_fd < 0) return -1;
  put32(frame, msg);
  put32(frame + 4, (unsigned int)w);
  put32(frame + 8, (unsigned int)l);
  if (record) memcpy(frame + 12, record, record_size);
  if (send_all(t_fd, frame, 12 + record_size) != 0 || read_answer(t_fd, answer) != 0) {
    drop_connection();
    return -1;
  }
  return 0;
}

static int event(unsigned int msg, int l) {
  int answer = 0;
  return call(msg, t_id, l, NULL, 0, &answer);
}

int zolprobe_set_socket(const char* path) {
  pthread_mutex_lock(&g_socket_lock);
  snprintf(g_socket_path, sizeof g_socket_path, "%s", path ? path : "");
  pthread_mutex_unlock(&g_socket_lock);
  return 0;
}

/* The value of `key` in section [Profiler] of a settings file, compared
 * without regard to case. */
static int read_setting(FILE* f, const char* key, char* out, size_t size) {
  char line[2048];
  int in_section = 0;
  rewind(f);
  while (fgets(line, sizeof line, f)) {
    char* s = line;
    size_t len;
    while (*s == ' ' || *s == '\t') ++s;
    len = strlen(s);
    while (len > 0 && (s[len - 1] == '\n' || s[len - 1] == '\r' || s[len - 1] == ' ')) s[--len] = 0;
    if (*s == '[') {
      in_section = strncasecmp(s, "[Profiler]", 10) == 0;
      continue;
    }
    if (in_section) {
      char* eq = strchr(s, '=');
      if (!eq) continue;
      size_t klen = (size_t)(eq - s);
      while (klen > 0 && (s[klen - 1] == ' ' || s[klen - 1] == '\t')) --klen;
      if (klen == strlen(key) && strncasecmp(s, key, klen) == 0) {
        const char* v = eq + 1;
        while (*v == ' ' || *v == '\t') ++v;
        snprintf(out, size, "%s", v);
        return 0;
      }
    }
  }
  return -1;
}

int zolprobe_find_socket(const char* settings_file, char* out, unsigned long size) {
  char hwnd[64];
  int found;
  FILE* f = settings_file ? fopen(settings_file, "r") : NULL;
  if (!f) return -1;
  found = read_setting(f, "hWnd", hwnd, sizeof hwnd) == 0 && strcmp(hwnd, "0") != 0 &&
          hwnd[0] != 0 && read_setting(f, "Socket", out, size) == 0 && out[0] != 0;
  fclose(f);
  return found ? 0 : -1;
}

static int connect_receiver(void) {
  char path[sizeof g_socket_path];
  struct sockaddr_un addr;
  int fd;
  pthread_mutex_lock(&g_socket_lock);
  memcpy(path, g_socket_path, sizeof path);
  pthread_mutex_unlock(&g_socket_lock);
  if (path[0] == 0) {
    const char* home = getenv("ZOLMARK_HOME");
    char ini[4096];
    if (!home) return -1;
    snprintf(ini, sizeof ini, "%s/Zolmark.ini", home);
    if (zolprobe_find_socket(ini, path, sizeof path) != 0) return -1;
  }
  memset(&addr, 0, sizeof addr);
  addr.sun_family = AF_UNIX;
  if (strlen(path) >= sizeof addr.sun_path) return -1;
  strcpy(addr.sun_path, path);
  fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (fd < 0) return -1;
  if (connect(fd, (struct sockaddr*)&addr, sizeof addr) != 0) {
    close(fd);
    return -1;
  }
  return fd;
}

int zolprobe_register_thread(const zolprobe_registration* r) {
  unsigned char pds[kPdsBytes];
  int id;
  int answer = 0;
  if (!r) return -1;
  id = r->profiler_id > 0 ? r->profiler_id : atomic_fetch_add(&g_next_id, 1);
  memset(pds, 0, sizeof pds);
  put32(pds, (unsigned int)syscall(SYS_gettid));
  put32(pds + 4, (unsigned int)getpid());
  put32(pds + 8, (unsigned int)id);
  if (put_text(pds + kTitleAt, kTitleBytes, r->title) != 0 ||
      put_text(pds + kVbpAt, kPathBytes, r->vbp) != 0 ||
      put_text(pds + kVbgAt, kPathBytes, r->vbg) != 0 ||
      put_text(pds + kIniAt, kPathBytes, r->ini_file) != 0) {
    return -1;
  }
  put32(pds + kCountsAt, (unsigned int)r->app_major);
  put32(pds + kCountsAt + 4, (unsigned int)r->app_minor);
  put32(pds + kCountsAt + 8, (unsigned int)r->app_rev);
  put32(pds + kCountsAt + 12, (unsigned int)r->lines_number);
  put32(pds + kCountsAt + 16, (unsigned int)r->procedures_number);
  drop_connection();
  t_fd = connect_receiver();
  if (t_fd < 0) return -1;
  if (call(kRegister, (int)getpid(), 0, pds, sizeof pds, &answer) != 0 ||
      answer != kRegisteredAnswer) {
    drop_connection();
    return -1;
  }
  t_id = id;
  return id;
}

int zolprobe_line(int line_id) {
  return event(kLine, line_id);
}
int zolprobe_proc_in(int procedure_id) {
  return event(kProcIn, procedure_id);
}
int zolprobe_proc_out(int procedure_id) {
  return event(kProcOut, procedure_id);
}

int zolprobe_calibrate(int samples) {
  int answer = 0;
  int result = -1;
  if (samples < 2) return -1;
  pthread_mutex_lock(&g_calibration_lock);
  if (call(kCalibrationStart, t_id, samples, NULL, 0, &answer) == 0) {
    int i = 0;
    while (i < samples && call(kSample, t_id, i, NULL, 0, &answer) == 0) ++i;
    if (i == samples) result = call(kCalibrationEnd, t_id, samples, NULL, 0, &answer);
  }
  pthread_mutex_unlock(&g_calibration_lock);
  return result;
}

int zolprobe_thread_end(void) {
  int answer = 0;
  int result = call(kThreadEnd, t_id, 0, NULL, 0, &answer);
  drop_connection();
  return result;
}
