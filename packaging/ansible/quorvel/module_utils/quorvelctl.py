# SPDX-License-Identifier: GPL-3.0-or-later

# What the modules have in common: one run of quorvelctl and what became of it.

import json

FRAME = dict(
    command=dict(type='str', default='quorvelctl'),
    usb=dict(type='str', default=''),
    port=dict(type='str', default=''),
    rate=dict(type='int', default=0),
    timeout=dict(type='float', default=3),
)


class Refused(Exception):
    """quorvelctl could not do it: its sentence, its exit code and what that is called."""

    def __init__(self, rc, cause, sentence, unconfirmed=None):
        super().__init__(sentence)
        self.result = dict(msg=sentence, rc=rc, cause=cause)
        if unconfirmed:
            self.result['unconfirmed'] = unconfirmed


def quorvelctl(module, words):
    """The document that a command of quorvelctl says; raises Refused if there is none."""
    options = ['--json', '--timeout', str(module.params['timeout'])]
    for option in ('usb', 'port', 'rate'):
        if module.params[option]:
            options += ['--' + option, str(module.params[option])]
    program = module.get_bin_path(module.params['command'], required=True)
    rc, out, err = module.run_command([program] + words + options)
    try:
        document = json.loads(out.strip().split('\n')[-1])
    except ValueError:
        raise Refused(rc, 'failed', err.strip() or 'quorvelctl ended with %d and said nothing.' % rc)
    if rc != 0:
        error = document.get('error', {})
        raise Refused(rc, error.get('name', 'failed'), error.get('message', err.strip()),
                      error.get('unconfirmed'))
    return document
