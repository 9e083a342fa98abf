/* SPDX-License-Identifier: MIT */
/* grab_one [file.ppm]: lists the cameras, opens the first one and saves one frame as an image. */
#include <orvalis/OrvalisAPI.h>

#include <stdio.h>
#include <stdlib.h>

/* A grab writes to the caller's memory: allocate enough for the whole sensor, whatever the region.
 */
static int grab(OCameraHandle camera, OImageFrame *frame)
{
    OSizeInfo size;
    if (OrvalisGetSizeInfo(camera, &size) != ORVALIS_OK)
        return -1;
    frame->rgb = malloc((size_t)size.maxWidth * (size_t)size.maxHeight * 3);
    return frame->rgb ? OrvalisGrabRGBData(camera, frame, 5000) : ORVALIS_ERROR_OUT_OF_MEMORY;
}

static int save(const OImageFrame *frame, const char *path)
{
    FILE *file = fopen(path, "wb");
    if (!file)
        return -1;
    fprintf(file, "P6\n%u %u\n255\n", frame->width, frame->height);
    size_t written = fwrite(frame->rgb, 1, frame->rawSize, file);
    return fclose(file) == 0 && written == frame->rawSize ? 0 : -1;
}

int main(int argc, char **argv)
{
    uint32_t count = 0;
    char name[ORVALIS_NAME_SIZE], id[ORVALIS_NAME_SIZE];
    if (OrvalisInit() != ORVALIS_OK || OrvalisNumberOfCameras(&count) != ORVALIS_OK)
        return 1;
    for (uint32_t i = 0; i < count; ++i)
        if (OrvalisGetDisplayName(i, name) == ORVALIS_OK && OrvalisGetCameraID(i, id) == ORVALIS_OK)
            printf("%u: %s, %s\n", i, name, id);

    OCameraHandle camera = NULL;
    OImageFrame frame = {0};
    int result = OrvalisGetCameraID(0, id);
    if (result == ORVALIS_OK && (result = OrvalisOpenCamera(id, &camera)) == ORVALIS_OK) {
        result = grab(camera, &frame);
        OrvalisCloseCamera(camera);
    }
    const char *path = argc > 1 ? argv[1] : "picture.ppm";
    if (result != ORVALIS_OK)
        fprintf(stderr, count ? "the camera answers with error %d\n" : "no camera\n", result);
    else if ((result = save(&frame, path)) != 0)
        perror(path);
    free(frame.rgb);
    OrvalisUninit();
    return result == ORVALIS_OK ? 0 : 1;
}
