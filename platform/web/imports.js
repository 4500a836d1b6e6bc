// SPDX-License-Identifier: MIT
// The function of the page that the program calls, for all its messages.
mergeInto(LibraryManager.library, {
    toravane_send: function (message, length) {
        Module["receive"](HEAPU8.subarray(message, message + length));
    },
    toravane_local_time: function () {
        var now = new Date();
        return now.getTime() - now.getTimezoneOffset() * 60000;
    },
});
