// Conversations: the list (newest first or by name), a search over names,
// numbers and every message's text, and each conversation as bubbles with a
// search of its own that reaches every message.
'use strict';

(function (YH) {
  const {el, text} = YH;
  const PAGE_ROWS = 250;
  const THREAD_STEP = 200;
  const ONLY_ATTACHMENT = '\ufffc';

  // Messages' conversations keep their first addresses and data files
  // (#thread/N, thread-N), another kind's are #thread/KIND/N and KIND-thread-N.
  function threadLink(kind, thread, message) {
    return '#thread/' + (kind === 'messages' ? '' : kind + '/') + thread + (message === undefined ? '' : '/' + message);
  }

  function dataPrefix(kind) {
    return kind === 'messages' ? '' : kind + '-';
  }

  function threadName(thread) {
    return text(thread.another || thread.phone || thread.id);
  }

  function attachmentsOf(message) {
    return Array.isArray(message.attachments) ? message.attachments.filter(function (a) {
      return a && typeof a === 'object';
    }) : [];
  }

  // A message's text without the marks iOS leaves where its attachments stood.
  function bodyOf(message) {
    return text(message.text).split(ONLY_ATTACHMENT).join('').trim();
  }

  // The line a conversation is listed with: its last message's text, else
  // what that message carried.
  function preview(message) {
    if (!message) return '';
    const body = bodyOf(message);
    if (body) return body;
    const names = attachmentsOf(message).map(YH.fileName).filter(Boolean);
    if (names.length) return 'Attachment: ' + names.join(', ');
    return text(message.text).includes(ONLY_ATTACHMENT) ? 'Attachment' : '';
  }

  function serviceClass(message) {
    const service = text(message.service).toLowerCase();
    if (service === 'sms' || service === 'mms') return 'sms';
    if (service === 'imessage') return 'imessage';
    return 'other';
  }

  function attachmentNode(attachment) {
    const name = YH.fileName(attachment);
    const href = YH.fileHref(attachment.exported_path);
    if (!href) {
      const why = YH.isMissing(attachment) ? 'not in the backup' : 'not copied';
      return el('span', {className: 'attachment missing'}, name + ' (' + why + ')');
    }
    const thumbnail = YH.fileHref(attachment.preview_path) || (YH.PICTURES.test(attachment.exported_path) ? href : null);
    if (thumbnail) {
      const link = el('a', {href: href, className: 'attachment picture', title: name});
      const picture = el('img', {src: thumbnail, alt: name, loading: 'lazy', decoding: 'async'});
      picture.addEventListener('error', function () { link.replaceChildren(name); });
      link.append(picture);
      return link;
    }
    if (YH.VIDEOS.test(attachment.exported_path)) {
      return el('video', {className: 'attachment', controls: true, preload: 'metadata', src: href});
    }
    return el('a', {href: href, className: 'attachment file'}, name);
  }

  // In a group chat, received messages name their sender.
  function bubble(message, index, group) {
    const sent = Number(message.type) === 1;
    const attachments = attachmentsOf(message);
    const body = attachments.length ? bodyOf(message) : text(message.text);
    const parts = [];
    if (body === ONLY_ATTACHMENT) {
      parts.push(el('a', {className: 'attachment', href: '#kind/attachments'}, 'Attachment'));
    } else if (body) {
      parts.push(el('p', null, body));
    }
    for (const attachment of attachments) parts.push(attachmentNode(attachment));
    const meta = [text(message.date), text(message.service)];
    if (group && !sent) meta.unshift(text(message.sender_name || message.sender));
    const node = el('div', {className: 'bubble ' + (sent ? 'sent ' : 'received ') + serviceClass(message)},
        ...parts, YH.isDeleted(message) ? YH.deletedMark(message) : null,
        el('span', {className: 'meta'}, meta.filter(Boolean).join(' · ')));
    if (YH.isDeleted(message)) node.classList.add('deleted');
    node.dataset.index = index;
    return node;
  }

  // Every message's text and date, one list per conversation, loaded on the
  // first search.
  function searchMessages(kind, wanted, threads, done) {
    YH.load(dataPrefix(kind) + 'message-texts').then(function (texts) {
      const found = [];
      texts.forEach(function (messages, thread) {
        if (!Array.isArray(messages) || !threads[thread]) return;
        messages.forEach(function (pair, index) {
          if (Array.isArray(pair) && text(pair[0]).toLowerCase().includes(wanted)) {
            found.push({thread: thread, index: index, text: text(pair[0]), date: text(pair[1])});
          }
        });
      });
      done(found);
    }).catch(YH.failed);
  }

  YH.showThreads = function (kind, label, threads) {
    const items = threads.map(function (thread, index) {
      const name = threadName(thread);
      const last = thread.last || {};
      return {index: index, name: name, last: preview(last), date: text(last.date), count: thread.count,
        deleted: Number(thread.deleted) || 0,
        haystack: [name, text(thread.phone), text(thread.id), text(thread.display_name)].join('\u0001').toLowerCase(),
        numbers: [thread.phone, thread.id].map(YH.digits).join('\u0001')};
    });
    const list = el('ol', {className: 'threads', id: 'threads'});
    const pager = el('div', {className: 'pager'});
    const search = el('input', {type: 'search', placeholder: 'Search names, numbers and messages', id: 'search'});
    const order = el('select', {id: 'order'}, el('option', {value: 'newest'}, 'Newest first'),
        el('option', {value: 'name'}, 'By name'));
    order.setAttribute('aria-label', 'Order');
    const found = el('section', {id: 'found', hidden: true});
    let page = 0;
    let asked = 0;
    function sorted(kept) {
      if (order.value === 'name') {
        return kept.sort(function (a, b) { return a.name.localeCompare(b.name, undefined, {numeric: true}); });
      }
      return kept.sort(YH.byDate(true, function (item) { return item.date; }));
    }
    function draw() {
      const wanted = YH.query(search);
      const kept = sorted(items.filter(function (item) { return YH.matches(wanted, item.haystack, item.numbers); }));
      page = Math.min(page, Math.max(0, Math.ceil(kept.length / PAGE_ROWS) - 1));
      const rows = kept.slice(page * PAGE_ROWS, (page + 1) * PAGE_ROWS).map(function (item) {
        return el('li', null, el('a', {href: threadLink(kind, item.index)},
            el('span', {className: 'name'}, item.name),
            el('span', {className: 'count'}, String(item.count),
                item.deleted ? el('span', {className: 'recovered-count'}, ' · ' + item.deleted + ' recovered') : null),
            el('span', {className: 'last'}, item.last),
            el('span', {className: 'date'}, item.date)));
      });
      // A kind without conversations still shows its (empty) list.
      list.replaceChildren(...(rows.length ? rows : [el('li', {className: 'note'}, 'No conversations')]));
      YH.drawPager(pager, page, kept.length, PAGE_ROWS, function (next) { page = next; draw(); });
    }
    // Messages whose text holds what was typed, newest conversations' first.
    function drawFound() {
      const wanted = search.value.trim().toLowerCase();
      const ask = ++asked;
      if (wanted.length < 2) {
        found.hidden = true;
        return;
      }
      searchMessages(kind, wanted, threads, function (messages) {
        if (ask !== asked) return;
        const results = el('ol', {className: 'found', id: 'found-messages'});
        const morePager = el('div', {className: 'pager'});
        let at = 0;
        function drawResults() {
          results.replaceChildren(...messages.slice(at * PAGE_ROWS, (at + 1) * PAGE_ROWS).map(function (hit) {
            return el('li', null, el('a', {href: threadLink(kind, hit.thread, hit.index)},
                el('span', {className: 'name'}, threadName(threads[hit.thread])),
                el('span', {className: 'date'}, hit.date),
                el('span', {className: 'last'}, hit.text)));
          }));
          YH.drawPager(morePager, at, messages.length, PAGE_ROWS, function (next) { at = next; drawResults(); });
        }
        drawResults();
        found.replaceChildren(el('h2', null, messages.length + (messages.length === 1 ? ' message' : ' messages') +
            ' containing “' + search.value.trim() + '”'), results, morePager);
        found.hidden = false;
      });
    }
    search.addEventListener('input', function () { page = 0; draw(); drawFound(); });
    order.addEventListener('change', function () { page = 0; draw(); });
    draw();
    YH.show(el('h1', null, label), el('div', {className: 'tools'}, search, order), found, list, pager);
  };

  // One conversation; `focus` is the message to show and mark, else the last.
  YH.showThread = function (kind, label, index, focus) {
    YH.show(YH.note('Loading…'));
    YH.load(kind).then(function (data) {
      const thread = data.threads[index];
      if (!thread) throw new Error('no such conversation');
      return YH.load(thread.data).then(function (chat) { drawThread(kind, label, thread, chat, focus); });
    }).catch(YH.failed);
  };

  function drawThread(kind, label, thread, chat, focus) {
    const messages = Array.isArray(chat.message) ? chat.message.map(function (m) {
      return m && typeof m === 'object' ? m : {};
    }) : [];
    const group = thread.group === true;
    const box = el('div', {className: 'bubbles', id: 'bubbles'});
    const earlier = el('button', {type: 'button', className: 'earlier', id: 'earlier'}, 'Show earlier messages');
    const later = el('button', {type: 'button', className: 'earlier', id: 'later'}, 'Show later messages');
    const shown = {from: 0, to: 0};
    function drawWindow(from, to) {
      shown.from = Math.max(0, from);
      shown.to = Math.min(messages.length, to);
      box.replaceChildren(...messages.slice(shown.from, shown.to).map(function (m, i) {
        return bubble(m, shown.from + i, group);
      }));
      earlier.hidden = shown.from === 0;
      later.hidden = shown.to >= messages.length;
    }
    earlier.addEventListener('click', function () {
      const from = Math.max(0, shown.from - THREAD_STEP);
      box.prepend(...messages.slice(from, shown.from).map(function (m, i) { return bubble(m, from + i, group); }));
      shown.from = from;
      earlier.hidden = from === 0;
    });
    later.addEventListener('click', function () {
      const to = Math.min(messages.length, shown.to + THREAD_STEP);
      box.append(...messages.slice(shown.to, to).map(function (m, i) { return bubble(m, shown.to + i, group); }));
      shown.to = to;
      later.hidden = to >= messages.length;
    });
    // Shows message `at` in the middle of a window when it is not drawn, and marks it.
    function reveal(at) {
      if (at < shown.from || at >= shown.to) drawWindow(at - THREAD_STEP / 2, at + THREAD_STEP / 2);
      box.querySelectorAll('.bubble.focus').forEach(function (node) { node.classList.remove('focus'); });
      const node = box.querySelector('.bubble[data-index="' + at + '"]');
      if (node) {
        node.classList.add('focus');
        node.scrollIntoView({block: 'center'});
      }
    }
    const title = threadName(thread);
    const recovered = messages.filter(YH.isDeleted).length;
    const who = [thread.phone, thread.id].filter(function (value, i, all) {
      return value && value !== thread.another && all.indexOf(value) === i;
    }).map(text).join(', ');
    YH.show(el('p', null, el('a', {href: '#kind/' + kind}, '← ' + label)), el('h1', null, title),
        el('p', {className: 'note'}, who + (who ? ' · ' : '') + messages.length + ' messages' +
            (recovered ? ' · ' + recovered + ' of them recovered from deleted data' : '')),
        threadSearch(messages, reveal), earlier, box, later);
    if (focus !== undefined && focus < messages.length) {
      reveal(focus);
    } else {
      drawWindow(messages.length - THREAD_STEP, messages.length);
      window.scrollTo(0, document.body.scrollHeight);
    }
  }

  // A search box over this conversation's messages with the previous and
  // next match, whichever page they are on.
  function threadSearch(messages, reveal) {
    const input = el('input', {type: 'search', placeholder: 'Search this conversation', id: 'thread-search'});
    const position = el('span', {className: 'position', id: 'thread-found'});
    const previous = el('button', {type: 'button', id: 'thread-previous'}, '‹ Previous');
    const next = el('button', {type: 'button', id: 'thread-next'}, 'Next ›');
    const state = {hits: [], at: -1};
    function go(step) {
      if (!state.hits.length) return;
      state.at = (state.at + step + state.hits.length) % state.hits.length;
      position.textContent = (state.at + 1) + ' of ' + state.hits.length;
      reveal(state.hits[state.at]);
    }
    input.addEventListener('input', function () {
      const wanted = input.value.trim().toLowerCase();
      state.hits = [];
      if (wanted) {
        messages.forEach(function (message, i) {
          if (text(message.text).toLowerCase().includes(wanted)) state.hits.push(i);
        });
      }
      // The newest match first, as the conversation opens at its end.
      state.at = state.hits.length;
      position.textContent = wanted ? (state.hits.length ? '' : 'not found') : '';
      if (state.hits.length) go(-1);
    });
    input.addEventListener('keydown', function (event) {
      if (event.key === 'Enter') go(event.shiftKey ? 1 : -1);
    });
    previous.addEventListener('click', function () { go(-1); });
    next.addEventListener('click', function () { go(1); });
    return el('div', {className: 'tools pager'}, input, previous, next, position);
  }
})(window.YH);
