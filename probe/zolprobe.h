/* libzolprobe: the sending side of a live run, for an instrumented program.
 *
 * Each thread of the program that is profiled registers itself once, then
 * reports every procedure entry and exit and every executed line, and says
 * when it ends. Every call sends one message over the thread's own
 * connection to the receiver and waits for its answer, so the receiver
 * stamps the event when it happens. All functions are safe to call from any
 * number of threads at once: the connection of a thread is its own.
 *
 * A call that can't reach the receiver returns -1 and the program goes on;
 * after a failure the thread's later calls do nothing (and return -1) until
 * it registers again.
 */
#ifndef ZOLPROBE_H
#define ZOLPROBE_H

#ifdef __cplusplus
extern "C" {
#endif

/* What a thread tells about itself when it registers. Texts are UTF-8. */
typedef struct zolprobe_registration {
  int profiler_id; /* number of the thread in the run, from 1; 0: the next free one of this process
                    */
  const char* title;    /* name of the session to make of this thread (at most 127 characters) */
  const char* vbp;      /* full path of the instrumented project file */
  const char* vbg;      /* full path of the project group file, or NULL */
  const char* ini_file; /* full path of the project's settings file for the run, or NULL */
  int app_major;
  int app_minor;
  int app_rev;
  int lines_number;      /* line IDs of the instrumented project */
  int procedures_number; /* procedure IDs of the instrumented project */
} zolprobe_registration;

/* The receiver's socket for the whole process. NULL or "": looked up in the
 * settings file (see zolprobe_find_socket) at the first registration.
 * Returns 0. */
int zolprobe_set_socket(const char* path);

/* Reads the socket's path from section "Profiler" of the settings file
 * `settings_file` (key "Socket"), provided key "hWnd" says a receiver is up.
 * Returns 0 and fills `out`, or -1. */
int zolprobe_find_socket(const char* settings_file, char* out, unsigned long size);

/* Opens this thread's connection and registers it. Returns the thread's
 * number in the run (profiler_id or the one given), or -1. */
int zolprobe_register_thread(const zolprobe_registration* registration);

/* The events of the calling thread. Each returns 0, or -1 when the message
 * couldn't be delivered. */
int zolprobe_line(int line_id);
int zolprobe_proc_in(int procedure_id);
int zolprobe_proc_out(int procedure_id);

/* Measures the cost of one message for this thread: `samples` (at least 2)
 * messages back to back, of which the receiver keeps the median gap. The
 * receiver holds one calibration at a time, so the threads of a process
 * calibrate one after the other; programs of one run in several processes
 * must not calibrate at the same moment. */
int zolprobe_calibrate(int samples);

/* Tells the receiver that this thread has ended and closes its connection. */
int zolprobe_thread_end(void);

#ifdef __cplusplus
}
#endif

#endif /* ZOLPROBE_H */
