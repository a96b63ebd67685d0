/* Audio output: raw PCM playback. */
#ifndef __TIZEN_MEDIA_AUDIO_IO_H__
#define __TIZEN_MEDIA_AUDIO_IO_H__

#include <sound_manager.h>
#include <tizen_error.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct audio_io_s *audio_in_h;
typedef struct audio_io_s *audio_out_h;

typedef enum {
    AUDIO_IO_ERROR_NONE = TIZEN_ERROR_NONE,
    AUDIO_IO_ERROR_OUT_OF_MEMORY = TIZEN_ERROR_OUT_OF_MEMORY,
    AUDIO_IO_ERROR_INVALID_PARAMETER = TIZEN_ERROR_INVALID_PARAMETER,
    AUDIO_IO_ERROR_INVALID_OPERATION = TIZEN_ERROR_INVALID_OPERATION,
    AUDIO_IO_ERROR_PERMISSION_DENIED = TIZEN_ERROR_PERMISSION_DENIED,
    AUDIO_IO_ERROR_NOT_SUPPORTED = TIZEN_ERROR_NOT_SUPPORTED,
    AUDIO_IO_ERROR_DEVICE_NOT_OPENED = TIZEN_ERROR_AUDIO_IO | 0x01,
    AUDIO_IO_ERROR_DEVICE_NOT_CLOSED = TIZEN_ERROR_AUDIO_IO | 0x02,
    AUDIO_IO_ERROR_INVALID_BUFFER = TIZEN_ERROR_AUDIO_IO | 0x03,
    AUDIO_IO_ERROR_SOUND_POLICY = TIZEN_ERROR_AUDIO_IO | 0x04,
    AUDIO_IO_ERROR_INVALID_STATE = TIZEN_ERROR_AUDIO_IO | 0x05,
    AUDIO_IO_ERROR_NOT_SUPPORTED_TYPE = TIZEN_ERROR_AUDIO_IO | 0x06
} audio_io_error_e;

typedef enum {
    AUDIO_CHANNEL_MONO = 0x80,  /* 128 */
    AUDIO_CHANNEL_STEREO        /* 129 */
} audio_channel_e;

typedef enum {
    AUDIO_SAMPLE_TYPE_U8 = 0x70, /* 112: unsigned 8-bit */
    AUDIO_SAMPLE_TYPE_S16_LE     /* 113: signed 16-bit little-endian */
} audio_sample_type_e;

typedef enum {
    AUDIO_IO_STATE_IDLE,
    AUDIO_IO_STATE_RUNNING,
    AUDIO_IO_STATE_PAUSED
} audio_io_state_e;

/* Sample rates from 8000 to 48000 Hz. */
int audio_out_create(int sample_rate, audio_channel_e channel, audio_sample_type_e type,
                     sound_type_e sound_type, audio_out_h *output);
/* As audio_out_create, for the media sound type. */
int audio_out_create_new(int sample_rate, audio_channel_e channel, audio_sample_type_e type,
                         audio_out_h *output);
int audio_out_destroy(audio_out_h output);
int audio_out_prepare(audio_out_h output);
int audio_out_unprepare(audio_out_h output);
/* Plays `length` bytes; the number of bytes written on success, otherwise a
 * negative error value. */
int audio_out_write(audio_out_h output, void *buffer, unsigned int length);
int audio_out_get_sample_rate(audio_out_h output, int *sample_rate);
int audio_out_get_channel(audio_out_h output, audio_channel_e *channel);
int audio_out_get_sample_type(audio_out_h output, audio_sample_type_e *type);
int audio_out_get_sound_type(audio_out_h output, sound_type_e *type);

#ifdef __cplusplus
}
#endif

#endif
