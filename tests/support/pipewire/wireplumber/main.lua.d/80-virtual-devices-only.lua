-- A test never touches the machine's own sound cards and cameras.
alsa_monitor.enabled = false
v4l2_monitor.enabled = false
libcamera_monitor.enabled = false
